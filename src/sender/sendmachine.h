// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a file sender does next: a state machine without socket, clock or thread.

#ifndef SENDMACHINE_H
#define SENDMACHINE_H

#include "sendresultdata.h"
#include "zysendoptions.h"

#include <QString>
#include <QVector>

namespace zyws
{

/// What happened to the sender.
struct SendEvent {
    enum Kind {
        Start,
        Connected, ///< key: of the file as it is now; isReading
        FileRead, ///< its digest is known
        ConnectFailed, ///< connectionFault, text; key: fingerprint of a refused certificate
        Dropped, ///< code: of the printer's close frame, 0 without one
        Refusal, ///< code: "errorcode"; wifiState
        Acknowledged, ///< offset: where this transfer began; window; key, bytes: "received"; code
        Verdict, ///< key, offset, code: "checkstate"
        Accepted, ///< the START_FILE reply, which comes after its transfer: offset, key, text: name
        FileFailed, ///< fileFault
        TimeLimit,
        CancelConfirmed,
        CancelRequested, ///< offset: where a transfer under way began, else -1; window
        LeaveRequested,
    };

    Kind kind = Start;
    QString key = {};
    QString text = {};
    bool isReading = false; ///< the digest is to be sent and is not known yet
    qint64 offset = -1;
    int window = 1; ///< chunks that may be under way at once
    qint64 bytes = 0;
    int code = 0;
    int wifiState = 0;
    ZySendResult::ConnectionFault connectionFault = ZySendResult::ConnectionFault::None;
    ZySendResult::FileFault fileFault = ZySendResult::FileFault::None;
};

/// What is to be done about it, in order.
struct SendAction {
    enum Kind {
        Connect,
        Offer, ///< send START_FILE
        Cancel, ///< send CANCEL_FILE
        Drop, ///< the connection, if there is one
        StartTimer, ///< number: ms until TimeLimit; replaces the one that runs
        StopTimer,
        TellOffered,
        TellResumed, ///< number: from
        TellRestarted,
        TellProgress, ///< number: received
        TellRetrying, ///< interruption, attempt, number: the pause in ms
        Finish, ///< result
    };

    Kind kind;
    qint64 number = 0;
    int attempt = 0;
    ZySendResult::Interruption interruption = ZySendResult::Interruption::None;
    ZySendResult result = {};
};

using SendActions = QVector<SendAction>;

class SendMachine
{
public:
    enum class State {
        Idle,
        Connecting,
        Reading, ///< connected; the offer waits for the digest
        Offering, ///< START_FILE is sent
        Sending, ///< a chunk has been acknowledged
        AwaitingVerdict, ///< the printer holds all bytes
        Pausing, ///< before a retry
        Cancelling,
        Ended,
    };

    /// @p size in bytes, of the file offered as @p name to @p printer, an address for people.
    SendMachine(const QString &name, qint64 size, const QString &printer,
                const ZySendOptions &options);

    State state() const { return m_state; }
    bool canCancel() const;
    SendActions handle(const SendEvent &event);

private:
    using Ending = ZySendResult::Ending;
    using Interruption = ZySendResult::Interruption;

    void connect();
    void onConnected(const SendEvent &event);
    void offer();
    void onRefused(const SendEvent &event);
    void onAcknowledged(const SendEvent &event);
    void onFirstAcknowledgement(qint64 offset);
    void onAllHeld();
    void onVerdict(const SendEvent &event);
    void onAccepted(const SendEvent &event);
    void onDropped(const SendEvent &event);
    void onTimeLimit();
    void onCancelRequested(const SendEvent &event);

    bool isTransferring() const;
    bool isLastChunkUnderWay() const;
    qint64 nextAcknowledgement() const;
    void retry(Interruption why, const SendEvent &cause = {});
    void finishOnceSettled();
    void finish(Ending ending, const QString &detail = {});

    void act(SendAction::Kind kind, qint64 number = 0);
    void startTimer(int milliseconds) { act(SendAction::StartTimer, milliseconds); }

    ZySendOptions m_options;
    ZySendResult::Data m_result;
    SendActions m_actions;
    State m_state = State::Idle;
    bool m_wasConnected = false;
    QString m_key;
    int m_window = 1; ///< chunks that may be under way at once
    qint64 m_acknowledged = 0; ///< in this attempt, its offset included
    qint64 m_acknowledgedBefore = 0; ///< in the attempt before that had anything acknowledged
    qint64 m_mostAcknowledged = 0; ///< over all attempts
    int m_failures = 0; ///< in a row, without a byte gained
    int m_attempts = 0;
    int m_fruitlessOffers = 0; ///< in a row: accepted, then dropped before any chunk was taken
    bool m_hasVerdict = false;
    bool m_isAccepted = false; ///< by a reply, which names the file as it is stored
};

/// The pause before retry number @p attempt (1 is the first), in ms.
int pauseBefore(int attempt, const ZySendOptions &options);

} // namespace zyws

#endif // SENDMACHINE_H
