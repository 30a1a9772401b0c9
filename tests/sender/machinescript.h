// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A notation for tests of the state machine: events as they come, actions as text.

#ifndef MACHINESCRIPT_H
#define MACHINESCRIPT_H

#include "sendmachine.h"

#include <vector>

namespace zytest
{

using zyws::SendAction;
using zyws::SendActions;
using zyws::SendEvent;
using zyws::SendMachine;

inline constexpr qint64 chunk = 1048576;
inline constexpr qint64 fileSize = 3 * chunk - 5;
inline const QString key = QStringLiteral("78563412");

// Events, as a printer that keeps to the protocol causes them.

inline SendEvent plainEvent(SendEvent::Kind kind)
{
    SendEvent made;
    made.kind = kind;
    made.key = key;
    return made;
}

inline SendEvent acknowledged(qint64 received, qint64 offset = 0, int code = 0)
{
    SendEvent made = plainEvent(SendEvent::Acknowledged);
    made.bytes = received;
    made.offset = offset;
    made.code = code;
    return made;
}

inline SendEvent refused(int errorcode, int wifiState)
{
    SendEvent made = plainEvent(SendEvent::Refusal);
    made.code = errorcode;
    made.wifiState = wifiState;
    return made;
}

inline SendEvent verdict(int checkState, const QString &of = key)
{
    SendEvent made = plainEvent(SendEvent::Verdict);
    made.code = checkState;
    made.key = of;
    return made;
}

inline SendEvent accepted(qint64 offset = 0, const QString &of = key)
{
    SendEvent made = plainEvent(SendEvent::Accepted);
    made.offset = offset;
    made.text = QStringLiteral("stored");
    made.key = of;
    return made;
}

inline SendEvent certificateChanged()
{
    SendEvent made = plainEvent(SendEvent::ConnectFailed);
    made.connectionFault = ZySendResult::ConnectionFault::CertificateChanged;
    return made;
}

inline SendEvent connectedWhileReading()
{
    SendEvent made = plainEvent(SendEvent::Connected);
    made.isReading = true;
    return made;
}

inline SendEvent dropped(qint64 offset = -1, int code = 1000)
{
    SendEvent made = plainEvent(SendEvent::Dropped);
    made.offset = offset;
    made.code = code;
    return made;
}

inline SendEvent cancelRequested(qint64 offset = -1)
{
    SendEvent made = plainEvent(SendEvent::CancelRequested);
    made.offset = offset;
    return made;
}

inline const SendEvent start = plainEvent(SendEvent::Start);
inline const SendEvent connected = plainEvent(SendEvent::Connected);
inline const SendEvent timeLimit = plainEvent(SendEvent::TimeLimit);

/// One letter for each action, in order; a timer with its milliseconds.
inline QString letters(const SendActions &actions)
{
    QStringList words;
    for (const SendAction &action : actions) {
        switch (action.kind) {
        case SendAction::Connect:
            words.append(QStringLiteral("connect"));
            break;
        case SendAction::Offer:
            words.append(QStringLiteral("offer"));
            break;
        case SendAction::Cancel:
            words.append(QStringLiteral("cancel"));
            break;
        case SendAction::Drop:
            words.append(QStringLiteral("drop"));
            break;
        case SendAction::StartTimer:
            words.append(QStringLiteral("timer %1").arg(action.number));
            break;
        case SendAction::StopTimer:
            break; // of no interest: the end stops it
        case SendAction::TellOffered:
            words.append(QStringLiteral("offered"));
            break;
        case SendAction::TellResumed:
            words.append(QStringLiteral("resumed %1").arg(action.number));
            break;
        case SendAction::TellRestarted:
            words.append(QStringLiteral("restarted"));
            break;
        case SendAction::TellProgress:
            words.append(QStringLiteral("progress %1").arg(action.number));
            break;
        case SendAction::TellRetrying:
            words.append(
                QStringLiteral("retrying %1 after %2 ms").arg(action.attempt).arg(action.number));
            break;
        case SendAction::Finish:
            words.append(QStringLiteral("finish"));
            break;
        }
    }
    return words.join(QStringLiteral(", "));
}

/// connect 1, stall 2, verdict 3, cancel 4 ms; pauses of 10, 20, 25, 25 … ms; 2 retries.
inline ZySendOptions limits()
{
    ZySendOptions options;
    options.setConnectTimeout(1);
    options.setStallTimeout(2);
    options.setVerdictTimeout(3);
    options.setCancelTimeout(4);
    options.setFirstPause(10);
    options.setLongestPause(25);
    options.setRetries(2);
    return options;
}

/// Some events for one machine; what the last one leads to.
struct Run {
    explicit Run(const std::vector<SendEvent> &events)
        : machine(QStringLiteral("part"), fileSize, QStringLiteral("ws://printer"), limits())
    {
        for (const SendEvent &each : events) {
            const SendActions made = machine.handle(each);
            last = letters(made);
            all.append(last);
            if (!made.isEmpty() && made.last().kind == SendAction::Finish) {
                result = made.last().result;
                ++finishCount;
            }
        }
    }

    SendMachine machine;
    QString last;
    QStringList all;
    ZySendResult result;
    int finishCount = 0;
};

inline const std::vector<SendEvent> throughLastChunk{
    start, connected, acknowledged(chunk), acknowledged(2 * chunk), acknowledged(fileSize)};

inline std::vector<SendEvent> operator+(std::vector<SendEvent> events, const SendEvent &further)
{
    events.push_back(further);
    return events;
}

} // namespace zytest

#endif // MACHINESCRIPT_H
