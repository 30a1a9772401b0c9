// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One command to a printer, and what came of it.

#include "exchange.h"

#include <vocabulary.h>

namespace zysession
{

namespace
{

namespace keys = zyws::keys;
namespace commands = zyws::commands;
namespace printstart = zyws::printstart;
namespace results = zyws::results;

QString wordOf(const QJsonObject &answer)
{
    return answer.value(keys::status).toString();
}

bool isTokenRejected(const QJsonObject &status)
{
    return status.value(keys::printStatus).toString() == zyws::printstates::tokenError;
}

} // namespace

Exchange::Exchange(PrinterLink &link, QObject *parent) : QObject(parent), m_link(link)
{
    m_timeLimit.setSingleShot(true);
    connect(&m_timeLimit, &QTimer::timeout, this, &Exchange::onTimeLimit);
    connect(&m_link, &PrinterLink::received, this, &Exchange::onReceived);
    connect(&m_link, &PrinterLink::dropped, this, [this] {
        if (isUnderWay())
            end(Ending::ConnectionLost);
    });
}

void Exchange::abandon()
{
    m_timeLimit.stop();
    m_judge = nullptr;
}

void Exchange::print(const QString &fileName)
{
    m_isChecking = false;
    ask(commands::startPrint, &Exchange::judgePrint,
        [&](ZySslEchoClient &client) { client.printStartCmd(fileName, m_token); });
}

void Exchange::pause()
{
    ask(commands::printPause, &Exchange::judgeCommand,
        [&](ZySslEchoClient &client) { client.printPauseCmd(m_token); });
}

void Exchange::stop()
{
    ask(commands::printStop, &Exchange::judgeCommand,
        [&](ZySslEchoClient &client) { client.printStopCmd(m_token); });
}

void Exchange::askStatus()
{
    askStatusFor(&Exchange::judgeStatus);
}

void Exchange::askVersion()
{
    ask(keys::version, &Exchange::acknowledge,
        [](ZySslEchoClient &client) { client.versionCheckCmd(); });
}

void Exchange::set(const Parameters &parameters)
{
    const bool isSetting = m_judge == &Exchange::sendParameters
        || m_judge == &Exchange::readParametersBack || m_judge == &Exchange::compareParameters;
    if (!isSetting)
        m_parameters.clear();
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        m_parameters.insert(it.key(), it.value());
    askStatusFor(&Exchange::sendParameters);
}

void Exchange::cancelFile()
{
    ask(commands::cancelFile, &Exchange::acknowledge,
        [](ZySslEchoClient &client) { client.cancel(); });
}

QString Exchange::versionOf(const QJsonObject &answer)
{
    return answer.value(keys::version).toString();
}

void Exchange::askStatusFor(Judge judge)
{
    ask(commands::getPrintStatus, judge,
        [&](ZySslEchoClient &client) { client.getPrintStatusCmd(m_token); });
}

void Exchange::ask(QLatin1String word, Judge judge, const Question &question)
{
    m_word = word;
    m_judge = judge;
    const bool isOpen = m_link.isOpen();
    m_timeLimit.start(isOpen ? m_link.limits().reply : 0);
    if (isOpen)
        question(*m_link.client());
}

void Exchange::onReceived(const QJsonObject &message)
{
    const bool isAnswer = message.value(keys::cmd).toString() == m_word
        || (m_word == keys::version && message.contains(keys::version));
    if (isUnderWay() && isAnswer)
        (this->*m_judge)(message);
}

void Exchange::onTimeLimit()
{
    end(m_link.isOpen() ? Ending::NoAnswer : Ending::ConnectionLost);
}

void Exchange::end(Ending ending, const QJsonObject &answer, const QStringList &kept)
{
    abandon();
    Q_EMIT ended({ending, answer, kept, m_timeLimit.interval()});
}

void Exchange::acknowledge(const QJsonObject &answer)
{
    end(Ending::Done, answer);
}

void Exchange::judgeCommand(const QJsonObject &answer)
{
    const QString word = wordOf(answer);
    if (word == results::tokenError)
        end(Ending::TokenRejected, answer);
    else
        end(word == results::done ? Ending::Done : Ending::Refused, answer);
}

void Exchange::judgePrint(const QJsonObject &answer)
{
    const QString word = wordOf(answer);
    if (word == printstart::checking && !m_isChecking) {
        m_isChecking = true; // the check's result is a second answer
        m_timeLimit.start(m_link.limits().check);
        Q_EMIT checking();
    } else if (word == printstart::started) {
        end(Ending::Done, answer);
    } else if (word == printstart::tokenError) {
        end(Ending::TokenRejected, answer);
    } else {
        end(word == printstart::busy ? Ending::Busy : Ending::CheckFailed, answer);
    }
}

void Exchange::judgeStatus(const QJsonObject &answer)
{
    end(isTokenRejected(answer) ? Ending::TokenRejected : Ending::Done, answer);
}

void Exchange::sendParameters(const QJsonObject &status)
{
    if (isTokenRejected(status)) {
        end(Ending::TokenRejected, status);
        return;
    }
    QJsonObject all;
    for (const QString &key : parameterKeys())
        all.insert(key, m_parameters.value(key, status.value(key).toString()));
    ask(commands::printParaSet, &Exchange::readParametersBack,
        [&](ZySslEchoClient &client) { client.setPrintParaCmd(all, m_token); });
}

void Exchange::readParametersBack(const QJsonObject &answer)
{
    const QString word = wordOf(answer);
    if (word == results::tokenError || word == results::failed)
        judgeCommand(answer);
    else
        askStatusFor(&Exchange::compareParameters);
}

void Exchange::compareParameters(const QJsonObject &status)
{
    if (isTokenRejected(status)) {
        end(Ending::TokenRejected, status);
        return;
    }
    QStringList kept;
    for (auto it = m_parameters.cbegin(); it != m_parameters.cend(); ++it) {
        if (!isSameValue(it.value(), status.value(it.key()).toString()))
            kept.append(it.key());
    }
    end(kept.isEmpty() ? Ending::Done : Ending::NotTaken, status, kept);
}

} // namespace zysession
