// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file on its way to a printer: at most one ZyFileSender, and what its user can do about it.

#include "upload.h"

#include "printercontrol.h"
#include "words.h"

#include <zyfilesender.h>

#include <QFileInfo>
#include <QLocale>

namespace zypanel
{

namespace
{

using Ending = ZySendResult::Ending;

Upload::State stateAfter(const ZySendResult &result, bool isResuming)
{
    switch (result.ending()) {
    case Ending::Sent:
    case Ending::CheckFailed:
        return Upload::State::Sent;
    case Ending::Cancelled:
        return Upload::State::Cancelled;
    case Ending::GaveUp:
        return Upload::State::Interrupted;
    case Ending::LeftForLater: // a cancel that came too late
        return Upload::State::Idle;
    case Ending::BusyReceiving:
    case Ending::BusyChecking:
    case Ending::TokenRejected:
    case Ending::NoConnection:
        return isResuming ? Upload::State::Interrupted : Upload::State::Failed;
    default:
        return Upload::State::Failed;
    }
}

/// What a fault is about: the file here, or its name there.
QString subjectOf(ZySendResult::FileFault fault, const Upload::Job &job)
{
    return fault < ZySendResult::FileFault::NameEmpty ? job.path : job.name;
}

} // namespace

Upload::Upload(QObject *parent) : QObject(parent) { }

Upload::~Upload() = default;

bool Upload::isUnderWay(State state)
{
    return state == State::Offered || state == State::Sending || state == State::Checking
        || state == State::Cancelling;
}

bool Upload::send(const zysession::Printer &printer, const QString &path, const QString &name)
{
    if (isUnderWay())
        return false;
    const Job job{printer, path, name.trimmed(), 0, QFileInfo(path).size()};
    const ZySendResult check = ZyFileSender::checkFile(job.path, job.name);
    if (check.ending() == Ending::LocalFile) {
        Q_EMIT noticed(fileFaultNotice(check.fileFault(), subjectOf(check.fileFault(), job)));
        return false;
    }
    m_job = job;
    m_isResuming = false;
    start();
    return true;
}

void Upload::start()
{
    m_sender = std::make_unique<ZyFileSender>(m_job.printer.url, m_job.path, m_job.name);
    ZySendOptions options = m_options;
    options.setRetries(0);
    options.setToken(m_job.printer.token);
    options.setSendsDigest(true);
    options.setTlsTrust(m_job.printer.trust());
    m_sender->setOptions(options);
    const ZyFileSender *sender = m_sender.get();
    connect(sender, &ZyFileSender::resumed, this, [this](qint64 from) {
        m_job.received = from;
        Q_EMIT noticed({Severity::Info, Topic::Upload,
                        tr("%1 already holds %2 of %3; the rest is sent.")
                            .arg(PrinterControl::nameOf(m_job.printer),
                                 QLocale().formattedDataSize(from, 1), m_job.name)});
        Q_EMIT resumed(from);
    });
    connect(sender, &ZyFileSender::reading, this, &Upload::reading);
    connect(sender, &ZyFileSender::progress, this, &Upload::onProgress);
    connect(sender, &ZyFileSender::finished, this, &Upload::onFinished);
    m_sender->start();
    setState(State::Offered);
}

void Upload::onProgress(qint64 received, qint64 total)
{
    m_job.received = received;
    m_job.total = total;
    if (m_state != State::Cancelling)
        setState(received < total ? State::Sending : State::Checking);
    Q_EMIT progressed(received, total);
}

void Upload::onFinished(const ZySendResult &result)
{
    m_sender.reset();
    const QString printer = PrinterControl::nameOf(m_job.printer);
    const bool isStored = !result.storedName().isEmpty();
    const QString offered = m_job.name;
    if (isStored)
        m_job.name = result.storedName();
    const QString subject
        = result.ending() == Ending::LocalFile ? subjectOf(result.fileFault(), m_job) : m_job.name;
    setState(stateAfter(result, m_isResuming));
    if (isStored)
        Q_EMIT stored(m_job.name);
    if (m_job.name != offered)
        Q_EMIT noticed(
            {Severity::Info, Topic::Upload,
             tr("%1 was resumed, so %2 keeps the name under which it was first sent: %3.")
                 .arg(offered, printer, m_job.name)});
    Q_EMIT noticed(sendNotice(result, subject, printer));
}

void Upload::cancel()
{
    if (!m_sender || m_state == State::Cancelling)
        return;
    if (!m_sender->canCancel()) {
        Q_EMIT noticed({Severity::Info, Topic::Upload,
                        tr("%1 has the whole file by now; it cannot be cancelled any more.")
                            .arg(PrinterControl::nameOf(m_job.printer))});
        return;
    }
    m_sender->cancel();
    setState(State::Cancelling);
}

void Upload::interrupt()
{
    if (!isUnderWay())
        return;
    m_sender.reset();
    setState(m_state == State::Cancelling ? State::Cancelled : State::Interrupted);
}

void Upload::resume(const QString &token)
{
    if (m_state != State::Interrupted)
        return;
    m_job.printer.token = token;
    m_isResuming = true;
    start();
}

void Upload::forget()
{
    if (!isUnderWay())
        setState(State::Idle);
}

void Upload::setState(State state)
{
    if (state == m_state)
        return;
    m_state = state;
    Q_EMIT stateChanged(state);
}

} // namespace zypanel
