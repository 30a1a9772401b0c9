// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel's commands, and what came of them.

#include "conversation.h"
#include "printercontrol.h"
#include "words.h"

namespace zypanel
{

using zysession::Exchange;

void PrinterControl::listenToCommands()
{
    connect(&m_conversation->print, &Exchange::checking, this, [this] {
        setChecking(true);
        Q_EMIT noticed({Severity::Info, Topic::Print,
                        tr("%1 is checking %2.").arg(printerName(), m_fileToPrint)});
    });
    connect(&m_conversation->print, &Exchange::ended, this, &PrinterControl::onPrintEnded);
    connect(&m_conversation->halt, &Exchange::ended, this,
            [this](const Result &result) { report(m_halting, result, {}); });
    connect(&m_conversation->parameters, &Exchange::ended, this,
            &PrinterControl::onParametersEnded);
}

void PrinterControl::startPrint(const QString &file)
{
    if (!isOpen())
        return;
    m_fileToPrint = file;
    m_isContinuing = m_status.canContinue() && m_status.filename == file;
    m_conversation->print.print(file);
}

void PrinterControl::pausePrint()
{
    if (!isOpen())
        return;
    m_halting = PrinterCommand::Pause;
    m_conversation->halt.pause();
}

void PrinterControl::stopPrint()
{
    if (!isOpen())
        return;
    m_halting = PrinterCommand::Stop;
    m_conversation->halt.stop();
}

void PrinterControl::setParameters(const zysession::Parameters &parameters)
{
    if (isOpen())
        m_conversation->parameters.set(parameters);
}

void PrinterControl::onPrintEnded(const Result &result)
{
    const QString file = m_fileToPrint;
    setChecking(false);
    report(m_isContinuing ? PrinterCommand::Continue : PrinterCommand::Print, result, file);
}

void PrinterControl::onParametersEnded(const Result &result)
{
    QStringList kept;
    for (const QString &key : result.kept)
        kept.append(parameterTerms(key).title);
    const bool isSettled
        = result.ending == Exchange::Ending::Done || result.ending == Exchange::Ending::NotTaken;
    // Otherwise the values last heard, in the place of those that were entered.
    Q_EMIT parametersSettled(isSettled
                                 ? zysession::PrinterStatus::fromReply(result.answer).parameters
                                 : m_status.parameters);
    report(PrinterCommand::SetParameters, result, kept.join(QStringLiteral(", ")));
}

void PrinterControl::report(PrinterCommand command, const Result &result, const QString &subject)
{
    Q_EMIT noticed(commandNotice(command, result.ending, subject));
}

void PrinterControl::setChecking(bool isChecking)
{
    if (isChecking == m_isChecking)
        return;
    m_isChecking = isChecking;
    Q_EMIT checkingChanged(isChecking);
}

} // namespace zypanel
