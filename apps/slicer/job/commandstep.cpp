// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One command to the printer: print, pause, stop, set, version, cancel.

#include "commandstep.h"

namespace zyslicer
{

namespace
{

using Command = Request::Command;
using zysession::Exchange;
using zysession::PrinterLink;
using zysession::PrinterStatus;

/// For people, in messages.
QString title(Command command)
{
    switch (command) {
    case Command::Pause:
        return QStringLiteral("pause");
    case Command::Stop:
        return QStringLiteral("stop");
    case Command::Set:
        return QStringLiteral("set");
    case Command::Version:
        return QStringLiteral("version");
    case Command::Cancel:
        return QStringLiteral("cancel");
    default:
        return QStringLiteral("print start");
    }
}

QString versionText(const QString &version)
{
    if (version.isEmpty())
        return QStringLiteral("the printer states no version");
    if (version.toInt() == 1)
        return QStringLiteral("version %1").arg(version);
    return QStringLiteral("version %1 (this program is made for version 1)").arg(version);
}

} // namespace

CommandStep::CommandStep(JobContext &context, Command command)
    : Step(context), m_command(command), m_exchange(context.link), m_before(context.link)
{
    m_exchange.setToken(token());
    m_before.setToken(token());
    connect(&context.link, &PrinterLink::failed, this, [this] { endUnconnected(); });
    connect(&context.link, &PrinterLink::opened, this, &CommandStep::ask);
    connect(&m_exchange, &Exchange::checking, this,
            [this] { reportPrint(Event::Kind::PrintChecking); });
    connect(&m_exchange, &Exchange::ended, this, &CommandStep::onEnded);
    connect(&m_before, &Exchange::ended, this, [&context](const Exchange::Result &result) {
        context.statusBefore = PrinterStatus::fromReply(result.answer);
    });
}

void CommandStep::start()
{
    context().link.open();
}

void CommandStep::ask()
{
    switch (m_command) {
    case Command::Pause:
        m_exchange.pause();
        break;
    case Command::Stop:
        m_exchange.stop();
        break;
    case Command::Set:
        m_exchange.set(context().request.parameters);
        break;
    case Command::Version:
        m_exchange.askVersion();
        break;
    case Command::Cancel:
        m_exchange.cancelFile();
        break;
    default:
        askToPrint();
        break;
    }
}

/// The answer does not say whether a paused print goes on; the status before tells it. Printers
/// answer in order, and nothing depends on this answer coming.
void CommandStep::askToPrint()
{
    m_before.askStatus();
    m_exchange.print(file());
}

void CommandStep::onEnded(const Exchange::Result &result)
{
    const QString what = title(m_command);
    switch (result.ending) {
    case Exchange::Ending::Done:
        onDone(result.answer);
        end();
        break;
    case Exchange::Ending::Busy:
        endPrintBusy();
        break;
    case Exchange::Ending::CheckFailed:
        endCheckFailed();
        break;
    case Exchange::Ending::Refused:
        end({ExitCode::Refused, what + QStringLiteral(" refused"), printer(),
             QStringLiteral("look with 'zyslicer status' whether something is printing")});
        break;
    case Exchange::Ending::NotTaken:
        endNotTaken(result);
        break;
    case Exchange::Ending::TokenRejected:
        endTokenRejected();
        break;
    case Exchange::Ending::NoAnswer:
    case Exchange::Ending::ConnectionLost:
        // The printer may do it all the same: asked once more, it would print twice.
        context().isWaitingInVain = true;
        endUnanswered(what, unansweredText(result), result.ending == Exchange::Ending::NoAnswer);
        break;
    }
}

void CommandStep::endPrintBusy()
{
    const QString value = QStringLiteral("%1 on %2").arg(file(), printer());
    endBusyOr({ExitCode::Busy, QStringLiteral("printer busy, it is receiving or checking a file"),
               value,
               QStringLiteral("'zyslicer status' does not show that; try again later, or wait for "
                              "it with --wait")},
              value);
}

/// A print that is stopped during its check has the same answer as a bad model.
void CommandStep::endCheckFailed()
{
    findOut([this](const PrinterStatus &status) {
        const QString value = QStringLiteral("%1 on %2").arg(file(), printer());
        const bool isStopped = status.state == PrinterStatus::State::Ended;
        const bool wasStopped = context().statusBefore.state == PrinterStatus::State::Ended;
        if (isStopped && !wasStopped)
            end({ExitCode::PrintFailed, QStringLiteral("print stopped during the check"), value,
                 QStringLiteral("another program or the printer has stopped it; start it again "
                                "with 'zyslicer print'")});
        else
            end({ExitCode::CheckFailed,
                 isStopped ? QStringLiteral("check failed, or print stopped during it")
                           : QStringLiteral("check failed"),
                 value,
                 QStringLiteral("the printer lacks this file or it is no valid model; send it "
                                "again")});
    });
}

void CommandStep::onDone(const QJsonObject &answer)
{
    switch (m_command) {
    case Command::Pause:
        reportAnswer(QStringLiteral("paused"), answer);
        break;
    case Command::Stop:
        reportAnswer(QStringLiteral("stopped"), answer);
        break;
    case Command::Set: {
        QJsonObject set;
        for (const QString &key : zysession::parameterKeys())
            set.insert(key, context().request.parameters.value(key, answer.value(key).toString()));
        reportAnswer(QStringLiteral("parameters set: ") + assignments({}), set);
        break;
    }
    case Command::Version:
        reportAnswer(versionText(Exchange::versionOf(answer)), answer);
        break;
    case Command::Cancel:
        reportAnswer(QStringLiteral("cancel acknowledged; it reaches no transfer of another "
                                    "connection: stop one with Ctrl-C where it is sent"),
                     answer);
        break;
    default:
        reportPrint(Event::Kind::PrintStarted);
        break;
    }
}

void CommandStep::reportPrint(Event::Kind kind)
{
    Event event;
    event.kind = kind;
    event.file = file();
    event.isResumed = (context().statusBefore.canContinue()
                       || context().statusBefore.state == PrinterStatus::State::Halting)
        && context().statusBefore.filename == event.file;
    Q_EMIT reported(event);
}

void CommandStep::reportAnswer(const QString &text, const QJsonObject &answer)
{
    Event event;
    event.kind = Event::Kind::Answer;
    event.text = text;
    event.answer = answer;
    Q_EMIT reported(event);
}

void CommandStep::endNotTaken(const Exchange::Result &result)
{
    QStringList kept;
    QStringList values;
    for (const QString &key : result.kept) {
        kept += QStringLiteral("%1=%2").arg(key, context().request.parameters.value(key));
        values += QStringLiteral("%1=%2").arg(key, result.answer.value(key).toString());
    }
    const QString taken = assignments(result.kept);
    end({ExitCode::Refused,
         kept.size() == 1 ? QStringLiteral("parameter not taken")
                          : QStringLiteral("parameters not taken"),
         QStringLiteral("%1 on %2").arg(kept.join(QLatin1Char(' ')), printer()),
         QStringLiteral("the printer keeps %1; it has taken %2; give values it accepts")
             .arg(values.join(QLatin1Char(' ')),
                  taken.isEmpty() ? QStringLiteral("none") : taken)});
}

/// The parameters to set, but @p left out.
QString CommandStep::assignments(const QStringList &left) const
{
    QStringList texts;
    const zysession::Parameters &parameters = context().request.parameters;
    for (const QString &key : zysession::parameterKeys()) {
        if (parameters.contains(key) && !left.contains(key))
            texts += QStringLiteral("%1=%2").arg(key, parameters.value(key));
    }
    return texts.join(QLatin1Char(' '));
}

/// The one to print: the one named, or the one that this job has just sent.
QString CommandStep::file() const
{
    return context().request.command == Command::Print ? context().request.printName
                                                       : context().storedName;
}

} // namespace zyslicer
