// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sends one file; and what can be wrong with files before any printer is asked.

#include "sendstep.h"

#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>

#include <algorithm>

namespace zyslicer
{

namespace
{

Q_LOGGING_CATEGORY(lcSlicer, "zyslicer", QtDebugMsg)

using Ending = ZySendResult::Ending;
using FileFault = ZySendResult::FileFault;
using Interruption = ZySendResult::Interruption;

constexpr int noticedSilence = 1000; // ms

Outcome fileOutcome(FileFault fault, const ModelFile &file)
{
    const auto outcome = [&](const QString &value, const QString &advice) {
        return Outcome{ExitCode::LocalFile, ZySendResult::text(fault), value, advice};
    };
    switch (fault) {
    case FileFault::Missing:
        return outcome(file.path, QStringLiteral("check the path"));
    case FileFault::NotAFile:
        return outcome(file.path, QStringLiteral("give a sliced model file"));
    case FileFault::Unreadable:
        return outcome(file.path, QStringLiteral("check that it still exists and its permissions"));
    case FileFault::Empty:
        return outcome(file.path, QStringLiteral("slice the model again"));
    case FileFault::Changed:
        return outcome(file.path, QStringLiteral("send it again once it is complete"));
    default: // of the name
        return outcome(file.name.isEmpty() ? QStringLiteral("\"\"") : file.name,
                       QStringLiteral("give another name with --as"));
    }
}

QString checkFailedAdvice(const ZySendResult &result, const ZySendOptions &options)
{
    if (result.checkState() == -1 && options.sendsDigest())
        return QStringLiteral(
            "the printer did not get the file as it is here, or finds it no valid "
            "model (check state %1); send it again");
    // Printers may keep such names for themselves and say no more than this.
    if (result.storedName().startsWith(QLatin1Char('.')))
        return QStringLiteral(
            "the printer finds no valid model of this name (check state %1); it "
            "may take no name that begins with a dot: give another one with --as");
    return QStringLiteral(
        "the printer has stored the file but finds it no valid model (check state "
        "%1); slice it again");
}

} // namespace

Outcomes checkModelFiles(const QVector<ModelFile> &files)
{
    QHash<QString, QString> paths; // by name
    for (const ModelFile &file : files) {
        if (paths.contains(file.name))
            return {{ExitCode::Usage, QStringLiteral("two files of one name"),
                     QStringLiteral("%1 and %2").arg(paths.value(file.name), file.path),
                     QStringLiteral("send one of them by itself, under another name, with --as")}};
        paths.insert(file.name, file.path);
    }
    Outcomes outcomes;
    for (const ModelFile &file : files) {
        const FileFault fault = ZyFileSender::checkFile(file.path, file.name).fileFault();
        if (fault == FileFault::None)
            return {};
        outcomes.append(fileOutcome(fault, file));
    }
    return outcomes;
}

SendStep::SendStep(JobContext &context, const ModelFile &file)
    : Step(context), m_file(file), m_sender(context.printer.url, file.path, file.name),
      m_size(QFileInfo(file.path).size())
{
    ZySendOptions options = context.request.sending;
    options.setToken(token());
    options.setTlsTrust(context.trust);
    m_sender.setOptions(options);
    connect(&m_sender, &ZyFileSender::offered, this, &SendStep::onOffered);
    connect(&m_sender, &ZyFileSender::resumed, this,
            [this](qint64 from) { report(Event::Kind::Resumed, from); });
    connect(&m_sender, &ZyFileSender::restarted, this, [this] { report(Event::Kind::Restarted); });
    connect(&m_sender, &ZyFileSender::progress, this, &SendStep::onProgress);
    connect(&m_sender, &ZyFileSender::reading, this,
            [this](qint64 done) { report(Event::Kind::Reading, done); });
    connect(&m_sender, &ZyFileSender::retrying, this, &SendStep::onRetrying);
    connect(&m_sender, &ZyFileSender::finished, this, &SendStep::onFinished);
    m_silenceWatch.setInterval(std::min(noticedSilence, options.stallTimeout() / 3));
    connect(&m_silenceWatch, &QTimer::timeout, this, &SendStep::watchSilence);
}

void SendStep::start()
{
    qCDebug(lcSlicer) << "connecting to" << context().printer.url;
    m_sender.start();
}

void SendStep::interrupt()
{
    if (m_isRefused) { // and the reason is being looked for
        endWith(ExitCode::Interrupted, QStringLiteral("interrupted"),
                QStringLiteral("the printer has refused the file"));
        return;
    }
    if (context().request.isKeeping) {
        m_isKept = m_sender.canCancel();
        m_sender.leave();
        return;
    }
    qCDebug(lcSlicer) << "cancelling" << m_file.name;
    if (m_sender.canCancel())
        report(Event::Kind::Cancelling);
    m_sender.cancel();
}

void SendStep::onOffered()
{
    m_isOffered = true;
    m_sinceAnswer.start();
    m_silenceWatch.start();
    report(Event::Kind::Offered);
}

void SendStep::onProgress(qint64 received)
{
    m_received = received;
    m_longestGap = std::max(m_longestGap, m_sinceAnswer.restart());
    if (received >= m_size)
        m_silenceWatch.stop(); // a printer that checks is not stalled
    report(Event::Kind::Progress, received);
}

/// A slow network makes long gaps, too; so does a limit to the rate.
void SendStep::watchSilence()
{
    constexpr int muchLonger = 3;
    constexpr qint64 chunk = 1048576;
    const qint64 limit = context().request.sending.rateLimit();
    const qint64 rest = limit > 0 ? chunk * 1000 / limit : 0;
    const qint64 silence = m_sinceAnswer.elapsed();
    if (silence < m_silenceWatch.interval() + rest || silence < muchLonger * m_longestGap)
        return;
    Event event;
    event.kind = Event::Kind::Stalled;
    event.file = m_file.name;
    event.received = m_received;
    event.total = m_size;
    event.delay = static_cast<int>(silence);
    Q_EMIT reported(event);
}

void SendStep::onRetrying(Interruption reason, int attempt, int pause)
{
    ++m_attempts;
    m_isOffered = false;
    m_silenceWatch.stop();
    Event event;
    event.kind = Event::Kind::Retrying;
    event.file = m_file.name;
    event.text = reasonText(reason);
    event.retry = attempt;
    event.delay = pause;
    Q_EMIT reported(event);
}

void SendStep::onFinished(const ZySendResult &result)
{
    qCDebug(lcSlicer) << result.sentence();
    m_silenceWatch.stop();
    switch (result.ending()) {
    case Ending::Sent:
        reportStored(result);
        end();
        break;
    case Ending::CheckFailed:
        reportStored(result);
        endWith(ExitCode::CheckFailed, QStringLiteral("check failed"),
                checkFailedAdvice(result, m_sender.options()).arg(result.checkState()));
        break;
    case Ending::Cancelled:
        endWith(ExitCode::Interrupted, QStringLiteral("interrupted"), cancelText(result));
        break;
    case Ending::LeftForLater:
        endWith(ExitCode::Interrupted, QStringLiteral("interrupted"),
                m_isKept ? QStringLiteral(
                    "what the printer holds is resumed when the file is sent again")
                    : result.bytes() < result.total()
                    ? QStringLiteral("not cancelled, since the printer may have the whole file by "
                                     "now; send it again to be sure")
                    : QStringLiteral("the printer has the whole file and is checking it"));
        break;
    default:
        endNotSent(result);
        break;
    }
}

void SendStep::endNotSent(const ZySendResult &result)
{
    switch (result.ending()) {
    case Ending::BusyReceiving:
        endWith(
            ExitCode::Busy, QStringLiteral("printer busy, it is receiving a file"),
            QStringLiteral("try again when that transfer has ended, or wait for it with --wait"));
        break;
    case Ending::BusyChecking:
        endWith(ExitCode::Busy, QStringLiteral("printer busy, it is checking a file to print"),
                QStringLiteral("try again when the check has ended, or wait for it with --wait"));
        break;
    case Ending::TokenRejected:
        endTokenRejected();
        break;
    case Ending::PrinterStorage:
        endWith(ExitCode::Refused, QStringLiteral("the printer cannot store the file"),
                QStringLiteral("check the printer's storage"));
        break;
    case Ending::PrinterFault:
        endWith(ExitCode::Refused,
                QStringLiteral("the printer breaks the protocol (%1)").arg(result.detail()),
                QStringLiteral("look at its answers with --verbose"));
        break;
    case Ending::LocalFile:
        end(fileOutcome(result.fileFault(), m_file));
        break;
    case Ending::NoConnection:
        endUnconnected(result.connectionFault(), result.detail(), result.refusedFingerprint());
        break;
    case Ending::GaveUp:
        endWith(ExitCode::GivenUp,
                QStringLiteral("transfer given up after %1 attempts (%2)")
                    .arg(m_attempts)
                    .arg(reasonText(result.interruption())),
                QStringLiteral("check the network and the printer and send again; what the printer "
                               "still holds of it, if anything, is resumed"));
        break;
    default: {
        m_isRefused = true;
        const QString value = QStringLiteral("%1 to %2").arg(m_file.name, printer());
        endBusyOr({ExitCode::Refused, QStringLiteral("refused by the printer"), value,
                   QStringLiteral("it takes no files now, though it does not say that it prints")},
                  value);
        break;
    }
    }
}

void SendStep::reportStored(const ZySendResult &result)
{
    context().storedName = result.storedName();
    Event event;
    event.kind = Event::Kind::Stored;
    event.file = m_file.name;
    event.text = result.storedName();
    event.received = result.bytes();
    event.total = result.total();
    event.checkState = result.checkState();
    Q_EMIT reported(event);
}

void SendStep::report(Event::Kind kind, qint64 received)
{
    Event event;
    event.kind = kind;
    event.file = m_file.name;
    event.received = received;
    event.total = m_size;
    Q_EMIT reported(event);
}

/// With the time that has passed in vain, which the user may have set.
QString SendStep::reasonText(Interruption reason) const
{
    const ZySendOptions &options = context().request.sending;
    if (reason == Interruption::Stalled)
        return QStringLiteral("no acknowledgement for %1 s").arg(options.stallTimeout() / 1000.0);
    if (reason == Interruption::NoVerdict)
        return QStringLiteral("no check result for %1 s").arg(options.verdictTimeout() / 1000.0);
    return ZySendResult::text(reason);
}

QString SendStep::cancelText(const ZySendResult &result) const
{
    if (result.isPartDeleted())
        return QStringLiteral("the printer has cancelled the transfer and deleted its part");
    return (m_isOffered ? QStringLiteral("the printer did not acknowledge the cancel")
                        : QStringLiteral("nothing was being sent"))
        + QStringLiteral("; what the printer holds is resumed when the file is sent again");
}

void SendStep::endWith(ExitCode code, const QString &what, const QString &advice)
{
    end({code, what, QStringLiteral("%1 to %2").arg(m_file.name, printer()), advice});
}

} // namespace zyslicer
