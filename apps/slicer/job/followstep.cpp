// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks for the printer's status, once or until the print has ended.

#include "followstep.h"

#include "printerlink.h"
#include "printphase.h"
#include "wirewords.h"

#include <zysslechoclient.h>

namespace
{

// A printer may show a print just started only after a moment.
constexpr int toleratedIdleAnswers = 10;

} // namespace

FollowStep::FollowStep(PrinterLink &link, Mode mode, const QString &token)
    : Step(link), m_mode(mode), m_token(token), m_exchange(link)
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, [this] { this->link().open(); });
    connect(&link, &PrinterLink::opened, this, &FollowStep::ask);
    connect(&link, &PrinterLink::failed, this, [this] { retry(QStringLiteral("no connection")); });
    // Between two questions nobody waits for an answer that would tell.
    connect(&link, &PrinterLink::dropped, this, [this] {
        if (m_pause.isActive())
            retry(QStringLiteral("connection lost"));
    });
    connect(&m_exchange, &Exchange::answered, this, &FollowStep::onAnswered);
    connect(&m_exchange, &Exchange::unanswered, this, &FollowStep::retry);
}

void FollowStep::start()
{
    link().open();
}

void FollowStep::interrupt()
{
    if (m_mode == Mode::UntilDone || m_wasRunning)
        endInterrupted(
            QStringLiteral("the print goes on; follow it with 'zyslicer status --watch'"));
    else
        endInterrupted(QStringLiteral("the printer goes on with what it was doing"));
}

void FollowStep::ask()
{
    m_exchange.ask([this](ZySslEchoClient &client) { client.getPrintStatusCmd(m_token); },
                   wire::getPrintStatus, link().limits().reply);
}

void FollowStep::onAnswered(const QJsonObject &answer)
{
    m_failures = 0;
    if (printPhase(answer.value(wire::printStatus).toString()) == PrintPhase::TokenRejected) {
        endTokenRejected();
        return;
    }
    Event event;
    event.kind = m_mode == Mode::Once ? Event::Kind::Snapshot : Event::Kind::Status;
    event.file = answer.value(wire::filename).toString();
    event.answer = answer;
    Q_EMIT reported(event);
    if (m_mode == Mode::Once)
        end();
    else
        judge(answer);
    if (!hasEnded())
        m_pause.start(link().limits().pollInterval);
}

void FollowStep::judge(const QJsonObject &answer)
{
    switch (printPhase(answer.value(wire::printStatus).toString())) {
    case PrintPhase::Idle:
        onIdle(answer);
        break;
    case PrintPhase::Running:
        m_wasRunning = true;
        break;
    case PrintPhase::Complete:
        end();
        break;
    case PrintPhase::Failed:
        endPrint(answer, QStringLiteral("print failed"));
        break;
    case PrintPhase::Stopped:
        endPrint(answer, QStringLiteral("print stopped"));
        break;
    case PrintPhase::TokenRejected:
    case PrintPhase::Unknown:
        break;
    }
}

void FollowStep::onIdle(const QJsonObject &answer)
{
    if (m_wasRunning)
        endPrint(answer, QStringLiteral("print ended without being complete"));
    else if (m_mode == Mode::UntilIdle)
        end();
    else if (++m_idleAnswers > toleratedIdleAnswers)
        endPrint(answer, QStringLiteral("print did not begin"));
}

void FollowStep::endPrint(const QJsonObject &answer, const QString &what)
{
    end({ExitCode::PrintFailed, what,
         QStringLiteral("%1 on %2, layer %3 of %4")
             .arg(answer.value(wire::filename).toString(), link().printer().description(),
                  answer.value(wire::curSliceLayer).toString(),
                  answer.value(wire::sliceLayerCount).toString()),
         QStringLiteral("look at the printer, then start again with 'zyslicer print'")});
}

void FollowStep::retry(const QString &reason)
{
    m_pause.stop();
    link().drop();
    // Only somebody who watches is helped by trying again.
    if (!link().wasOpen()) {
        endUnconnected();
    } else if (m_mode == Mode::Once || ++m_failures > link().limits().retries) {
        endUnanswered(QStringLiteral("status"), reason);
    } else {
        Event event;
        event.kind = Event::Kind::Retrying;
        event.text = reason;
        event.retry = m_failures;
        event.delay = backOff(link().limits(), m_failures);
        Q_EMIT reported(event);
        m_pause.start(event.delay);
    }
}
