// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks for the printer's status, once or until the print has ended.

#include "followstep.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

using zysession::Exchange;
using zysession::PrinterLink;
using zysession::PrinterStatus;

// A printer may show a print just started only after a moment.
constexpr int toleratedEarlyAnswers = 10;

/// The pause before retry number @p retry (1 is the first), in ms; it doubles with each.
int pauseBefore(int retry, const ZySendOptions &options)
{
    qint64 pause = options.firstPause();
    for (int i = 1; i < retry && pause < options.longestPause(); ++i)
        pause *= 2;
    return static_cast<int>(std::min<qint64>(pause, options.longestPause()));
}

} // namespace

FollowStep::FollowStep(JobContext &context, Mode mode)
    : Step(context), m_mode(mode), m_exchange(context.link)
{
    m_exchange.setToken(token());
    m_pause.setSingleShot(true);
    PrinterLink *link = &context.link;
    connect(&m_pause, &QTimer::timeout, this, [this, link] {
        m_isRetrying = false;
        link->open();
    });
    connect(link, &PrinterLink::opened, &m_exchange, &Exchange::askStatus);
    connect(link, &PrinterLink::failed, this, [this] { retry(QStringLiteral("no connection")); });
    // Between two questions no exchange is under way that would notice.
    connect(link, &PrinterLink::dropped, this, [this] {
        if (m_pause.isActive() && !m_isRetrying)
            retry(QStringLiteral("connection lost"));
    });
    connect(&m_exchange, &Exchange::ended, this, &FollowStep::onEnded);
}

void FollowStep::start()
{
    context().link.open();
}

void FollowStep::interrupt()
{
    if (m_mode == Mode::UntilDone || wasRunning())
        endInterrupted(
            QStringLiteral("the print goes on; follow it with 'zyslicer status --watch'"));
    else
        endInterrupted(QStringLiteral("the printer goes on with what it was doing"));
}

void FollowStep::onEnded(const Exchange::Result &result)
{
    if (result.ending == Exchange::Ending::TokenRejected) {
        endTokenRejected();
        return;
    }
    if (result.ending != Exchange::Ending::Done) {
        retry(unansweredText(result), result.ending == Exchange::Ending::NoAnswer);
        return;
    }
    m_failures = 0;
    const PrinterStatus status = PrinterStatus::fromReply(result.answer);
    Event event;
    event.kind = m_mode == Mode::Once ? Event::Kind::Snapshot : Event::Kind::Status;
    event.file = status.filename;
    event.answer = result.answer;
    Q_EMIT reported(event);
    if (m_mode == Mode::Once)
        end();
    else
        judge(status);
    if (!hasEnded())
        m_pause.start(context().request.pollInterval);
}

void FollowStep::judge(const PrinterStatus &status)
{
    if (status.hasJob())
        m_lastJob = status;
    else if (isEarly(status))
        return;
    else if (status.state == PrinterStatus::State::Ready)
        onReady(status);
    else if (status.state == PrinterStatus::State::Complete)
        end();
    else if (status.state == PrinterStatus::State::Failed)
        endPrint(status, QStringLiteral("print failed"));
    else if (status.state == PrinterStatus::State::Ended)
        endPrint(status, QStringLiteral("print stopped"));
}

/// True for what the printer may have shown before the print.
bool FollowStep::isEarly(const PrinterStatus &status)
{
    const PrinterStatus &before = context().statusBefore;
    return m_mode == Mode::UntilDone && !wasRunning()
        && (status.state == PrinterStatus::State::Ready
            || (status.state == before.state && status.filename == before.filename))
        && ++m_earlyAnswers <= toleratedEarlyAnswers;
}

void FollowStep::onReady(const PrinterStatus &status)
{
    if (wasRunning())
        endPrint(m_lastJob,
                 m_wasLost ? QStringLiteral("print lost, the printer has restarted")
                           : QStringLiteral("print ended without being complete"));
    else if (m_mode == Mode::UntilIdle)
        end();
    else
        endPrint(status, QStringLiteral("print did not begin"));
}

void FollowStep::endPrint(const PrinterStatus &status, const QString &what)
{
    end({ExitCode::PrintFailed, what,
         QStringLiteral("%1 on %2, layer %3 of %4")
             .arg(status.filename, printer(), QString::number(status.layer),
                  QString::number(status.layerCount)),
         QStringLiteral("look at the printer, then start again with 'zyslicer print'")});
}

void FollowStep::retry(const QString &reason, bool isSilent)
{
    m_pause.stop();
    m_wasLost = true;
    context().link.close();
    // Only a user who watches is helped by trying again.
    if (!context().link.wasOpen() || context().link.isRefused()) {
        endUnconnected();
    } else if (m_mode == Mode::Once || ++m_failures > context().request.sending.retries()) {
        endUnanswered(QStringLiteral("status"), reason, isSilent);
    } else {
        Event event;
        event.kind = Event::Kind::Retrying;
        event.text = reason;
        event.retry = m_failures;
        event.delay = pauseBefore(m_failures, context().request.sending);
        m_isRetrying = true;
        m_pause.start(event.delay);
        Q_EMIT reported(event);
    }
}

} // namespace zyslicer
