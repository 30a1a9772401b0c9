// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The session's print: commands, status requests, and what the replies mean.

#include "printersession.h"
#include "replykeys.h"

#include <zysslechoclient.h>

#include <QJsonObject>
#include <QStringList>

namespace zypanel
{

void PrinterSession::startPrint(const QString &name)
{
    if (m_link == Link::Open)
        m_client->printStartCmd(name, m_token);
}

void PrinterSession::pausePrint()
{
    if (m_link == Link::Open)
        m_client->printPauseCmd(m_token);
}

void PrinterSession::stopPrint()
{
    if (m_link == Link::Open)
        m_client->printStopCmd(m_token);
}

void PrinterSession::setParameters(const Parameters &parameters)
{
    if (m_link != Link::Open)
        return;
    QJsonObject object;
    for (auto it = parameters.begin(); it != parameters.end(); ++it)
        object.insert(it.key(), it.value());
    m_wantedParameters = parameters;
    m_areParametersAnswered = false;
    m_client->setPrintParaCmd(object, m_token);
}

void PrinterSession::poll()
{
    if (m_link != Link::Open || isTransferring())
        return;
    if (m_isStatusAwaited) {
        if (!m_isSilent && m_askedSince.hasExpired(m_timeouts.answering)) {
            m_isSilent = true;
            Q_EMIT noticed(linkFaultNotice(LinkFault::Silent, printerName()));
        }
        return;
    }
    m_isStatusAwaited = true;
    m_askedSince.start();
    m_client->getPrintStatusCmd(m_token);
}

void PrinterSession::onStatusReply(const QJsonObject &reply)
{
    m_isStatusAwaited = false;
    if (m_isSilent) {
        m_isSilent = false;
        Q_EMIT noticed({Severity::Good, tr("%1 answers again.").arg(printerName())});
    }
    const PrinterStatus before = m_status;
    setStatus(PrinterStatus::fromReply(reply));
    reportState(before);
    compareParameters();
}

void PrinterSession::setStatus(const PrinterStatus &status)
{
    if (status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged(m_status);
}

void PrinterSession::reportState(const PrinterStatus &before)
{
    if (m_status.word != before.word)
        Q_EMIT noticed(stateNotice(m_status.state, m_status.filename));
}

/// The reply to PRINT_PARA_SET only acknowledges; whether the values were taken, the status says.
void PrinterSession::compareParameters()
{
    if (m_wantedParameters.isEmpty() || !m_areParametersAnswered
        || m_status.state == PrinterStatus::State::TokenRejected)
        return;
    QStringList kept;
    for (auto it = m_wantedParameters.cbegin(); it != m_wantedParameters.cend(); ++it) {
        if (m_status.parameters.value(it.key()) != it.value())
            kept.append(parameterTitle(it.key()));
    }
    m_wantedParameters.clear();
    Q_EMIT parametersSettled(m_status.parameters);
    if (kept.isEmpty())
        Q_EMIT noticed({Severity::Good, tr("The printer uses the new print parameters.")});
    else
        Q_EMIT noticed({Severity::Warning,
                        tr("The printer keeps values of its own for: %1.")
                            .arg(kept.join(QStringLiteral(", ")))});
}

/// Every reply, whole: refusals with their reason, and results that have no signal.
void PrinterSession::onReply(const QJsonObject &message)
{
    const QString command = message.value(reply::cmd).toString();
    const QString result = message.value(reply::status).toString();
    const bool isFault = message.value(reply::errorcode).toInt() != 0;
    // A printer whose reception file cannot even be read leaves the command out of its refusal.
    if (isFault && (command == reply::startFile || command.isEmpty())) {
        onFileRefused(message);
    } else if (command == reply::printPause) {
        Q_EMIT noticed(commandResultNotice(Command::Pause, result));
    } else if (command == reply::printStop) {
        Q_EMIT noticed(commandResultNotice(Command::Stop, result));
    } else if (command == reply::printParaSet) {
        m_areParametersAnswered = true;
        Q_EMIT noticed(commandResultNotice(Command::SetParameters, result));
    } else if (message.contains(reply::version)) {
        const QString version = message.value(reply::version).toString();
        if (version.toInt() != 1)
            Q_EMIT noticed({Severity::Warning,
                            tr("The printer speaks version “%1” of the protocol; this program "
                               "knows version 1.")
                                .arg(version)});
    }
}

} // namespace zypanel
