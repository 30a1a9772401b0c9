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
    : Step(context), m_command(command), m_exchange(context.link)
{
    m_exchange.setToken(token());
    connect(&context.link, &PrinterLink::failed, this, [this] { endUnconnected(); });
    connect(&context.link, &PrinterLink::opened, this, &CommandStep::ask);
    connect(&m_exchange, &Exchange::checking, this,
            [this] { reportPrint(Event::Kind::PrintChecking); });
    connect(&m_exchange, &Exchange::ended, this, &CommandStep::onEnded);
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
        m_exchange.print(file());
        break;
    }
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
        end({ExitCode::Busy, QStringLiteral("printer busy"),
             QStringLiteral("%1 on %2").arg(file(), printer()),
             QStringLiteral("wait until 'zyslicer status' shows that it is free")});
        break;
    case Exchange::Ending::CheckFailed:
        end({ExitCode::CheckFailed, QStringLiteral("check failed"),
             QStringLiteral("%1 on %2").arg(file(), printer()),
             QStringLiteral("the printer lacks this file or it is no valid model; send it "
                            "again")});
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
        endUnanswered(what, unansweredText(result));
        break;
    }
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
        reportAnswer(QStringLiteral("parameters set"), set);
        break;
    }
    case Command::Version:
        reportAnswer(versionText(Exchange::versionOf(answer)), answer);
        break;
    case Command::Cancel:
        reportAnswer(QStringLiteral("cancel acknowledged"), answer);
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
    const QString key = result.kept.first();
    end({ExitCode::Refused, QStringLiteral("parameter not taken"),
         QStringLiteral("%1=%2 on %3").arg(key, context().request.parameters.value(key), printer()),
         QStringLiteral("the printer keeps %1; give a value it accepts")
             .arg(result.answer.value(key).toString())});
}

/// The one to print: the one named, or the one that this job has just sent.
QString CommandStep::file() const
{
    return context().request.command == Command::Print ? context().request.printName
                                                       : context().storedName;
}

} // namespace zyslicer
