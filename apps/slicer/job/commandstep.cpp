// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One command with one answer: pause, stop, version, cancel.

#include "commandstep.h"

#include "printerlink.h"
#include "wirewords.h"

#include <zysslechoclient.h>

namespace
{

Event answerEvent(const QString &text, const QJsonObject &answer)
{
    Event event;
    event.kind = Event::Kind::Answer;
    event.text = text;
    event.answer = answer;
    return event;
}

Event versionEvent(const QJsonObject &answer)
{
    const QString version = answer.value(wire::version).toString();
    if (version.isEmpty())
        return answerEvent(QStringLiteral("the printer states no version"), answer);
    if (version.toInt() == 1)
        return answerEvent(QStringLiteral("version %1").arg(version), answer);
    return answerEvent(
        QStringLiteral("version %1 (this program is made for version 1)").arg(version), answer);
}

std::function<Event(const QJsonObject &)> answerText(const QString &text)
{
    return [text](const QJsonObject &answer) { return answerEvent(text, answer); };
}

} // namespace

Command pauseCommand(const QString &token)
{
    return {QStringLiteral("pause"), wire::printPause,
            [token](ZySslEchoClient &client) { client.printPauseCmd(token); },
            answerText(QStringLiteral("paused")), true};
}

Command stopCommand(const QString &token)
{
    return {QStringLiteral("stop"), wire::printStop,
            [token](ZySslEchoClient &client) { client.printStopCmd(token); },
            answerText(QStringLiteral("stopped")), true};
}

Command versionCommand()
{
    return {QStringLiteral("version"), wire::version,
            [](ZySslEchoClient &client) { client.versionCheckCmd(); }, versionEvent, false};
}

Command cancelCommand()
{
    return {QStringLiteral("cancel"), wire::cancelFile,
            [](ZySslEchoClient &client) { client.cancel(); },
            answerText(QStringLiteral("cancel acknowledged")), false};
}

CommandStep::CommandStep(PrinterLink &link, const Command &command)
    : Step(link), m_command(command), m_exchange(link)
{
    connect(&link, &PrinterLink::failed, this, &CommandStep::endUnconnected);
    connect(&link, &PrinterLink::opened, this, [this] {
        m_exchange.ask(m_command.question, m_command.answerWord, this->link().limits().reply);
    });
    connect(&m_exchange, &Exchange::answered, this, &CommandStep::onAnswered);
    connect(&m_exchange, &Exchange::unanswered, this,
            [this](const QString &reason) { endUnanswered(m_command.title, reason); });
}

void CommandStep::start()
{
    link().open();
}

void CommandStep::onAnswered(const QJsonObject &answer)
{
    const QString status = answer.value(wire::status).toString();
    if (m_command.isJudged && status == wire::tokenError) {
        endTokenRejected();
    } else if (m_command.isJudged && status != wire::done) {
        end({ExitCode::Refused, m_command.title + QStringLiteral(" refused"),
             link().printer().description(),
             QStringLiteral("look with 'zyslicer status' whether something is printing")});
    } else {
        Q_EMIT reported(m_command.report(answer));
        end();
    }
}
