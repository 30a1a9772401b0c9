// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a file sender does next: a state machine without socket, clock or thread.

#include "sendmachine.h"

#include "filetransfer.h"
#include "vocabulary.h"

#include <algorithm>

namespace zyws
{

namespace
{

/// The WebSocket close code of a peer that failed on its own side.
constexpr int closeCodeInternalError = 1011;

/// A printer that drops the connection so often, each time after it has accepted the file and
/// before it has taken a chunk, has a network that works and a storage that does not.
constexpr int conclusiveFruitlessOffers = 3;

bool isCertificateRefused(ZySendResult::ConnectionFault fault)
{
    return fault == ZySendResult::ConnectionFault::CertificateUntrusted
        || fault == ZySendResult::ConnectionFault::CertificateChanged;
}

} // namespace

int pauseBefore(int attempt, const ZySendOptions &options)
{
    // After 2^15 times the first pause the longest one is reached in any case.
    const qint64 doubled = static_cast<qint64>(options.firstPause())
        << std::clamp(attempt - 1, 0, 15);
    return static_cast<int>(std::min<qint64>(doubled, options.longestPause()));
}

SendMachine::SendMachine(const QString &name, qint64 size, const QString &printer,
                         const ZySendOptions &options)
    : m_options(options)
{
    m_result.name = name;
    m_result.printer = printer;
    m_result.total = size;
}

SendActions SendMachine::handle(const SendEvent &event)
{
    m_actions.clear();
    if (m_state == State::Ended)
        return {};
    switch (event.kind) {
    case SendEvent::Start:
        connect();
        break;
    case SendEvent::Connected:
        onConnected(event);
        break;
    case SendEvent::FileRead:
        if (m_state == State::Reading)
            offer();
        break;
    case SendEvent::ConnectFailed:
        retry(Interruption::ConnectFailed, event);
        break;
    case SendEvent::Dropped:
        onDropped(event);
        break;
    case SendEvent::Refusal:
        onRefused(event);
        break;
    case SendEvent::Acknowledged:
        onAcknowledged(event);
        break;
    case SendEvent::Verdict:
        onVerdict(event);
        break;
    case SendEvent::Accepted:
        onAccepted(event);
        break;
    case SendEvent::FileFailed:
        m_result.fileFault = event.fileFault;
        finish(Ending::LocalFile, event.text);
        break;
    case SendEvent::TimeLimit:
        onTimeLimit();
        break;
    case SendEvent::CancelConfirmed:
        m_result.isPartDeleted = m_state == State::Cancelling;
        if (m_result.isPartDeleted)
            finish(Ending::Cancelled);
        break;
    case SendEvent::CancelRequested:
        onCancelRequested(event);
        break;
    case SendEvent::LeaveRequested:
        finish(Ending::LeftForLater);
        break;
    }
    return m_actions;
}

void SendMachine::connect()
{
    ++m_attempts;
    m_state = State::Connecting;
    if (m_acknowledged > 0)
        m_acknowledgedBefore = m_acknowledged;
    m_acknowledged = 0;
    m_hasVerdict = false;
    m_isAccepted = false;
    startTimer(m_options.connectTimeout());
    act(SendAction::Connect);
}

void SendMachine::onConnected(const SendEvent &event)
{
    if (m_state != State::Connecting)
        return;
    // The end of the file makes its key, by which the printer would resume another file's part.
    if (!m_key.isEmpty() && m_key != event.key) {
        m_result.fileFault = ZySendResult::FileFault::Changed;
        finish(Ending::LocalFile);
        return;
    }
    m_key = event.key;
    m_wasConnected = true;
    if (!event.isReading) {
        offer();
        return;
    }
    m_state = State::Reading;
    act(SendAction::StopTimer);
}

void SendMachine::offer()
{
    m_state = State::Offering;
    startTimer(m_options.stallTimeout());
    act(SendAction::TellOffered);
    act(SendAction::Offer);
}

void SendMachine::onRefused(const SendEvent &event)
{
    if (m_state != State::Offering)
        return;
    if (event.code == TransferError::TokenError)
        finish(Ending::TokenRejected);
    else if (event.code == TransferError::FileBusy)
        finish(Ending::PrinterStorage);
    else if (event.wifiState == HostAnswer::ReceivingFile && m_attempts > 1)
        // Most likely our own lost connection, which the printer has not noticed yet.
        retry(Interruption::StillReceiving);
    else if (event.wifiState == HostAnswer::ReceivingFile)
        finish(Ending::BusyReceiving);
    else if (event.wifiState == HostAnswer::CheckingPrintFile)
        finish(Ending::BusyChecking);
    else
        finish(Ending::Unwilling);
}

void SendMachine::onAcknowledged(const SendEvent &event)
{
    if (!isTransferring())
        return;
    m_window = event.window;
    if (m_state == State::Offering)
        onFirstAcknowledgement(event.offset);
    const qint64 expected = nextAcknowledgement();
    if (m_state == State::Ended)
        return;
    if (event.key != m_key) {
        finish(Ending::PrinterFault, QStringLiteral("it acknowledged data of another file"));
    } else if (event.code != 0 || event.bytes < expected) {
        finish(Ending::PrinterStorage);
    } else if (event.bytes > expected) {
        finish(Ending::PrinterFault, QStringLiteral("it acknowledged more than was sent"));
    } else {
        m_acknowledged = event.bytes;
        m_mostAcknowledged = std::max(m_mostAcknowledged, m_acknowledged);
        // More than the attempt before, which may have lost much to a printer that restarted.
        if (m_acknowledged > m_acknowledgedBefore) {
            m_failures = 0;
            m_fruitlessOffers = 0;
        }
        act(SendAction::TellProgress, m_acknowledged);
        const bool isComplete = m_acknowledged == m_result.total;
        m_state = isComplete ? State::AwaitingVerdict : State::Sending;
        startTimer(isComplete ? m_options.verdictTimeout() : m_options.stallTimeout());
    }
}

void SendMachine::onFirstAcknowledgement(qint64 offset)
{
    if (offset < 0 || offset > m_result.total) {
        finish(Ending::PrinterFault, QStringLiteral("it wanted the file from beyond its end"));
        return;
    }
    m_acknowledged = offset;
    m_state = State::Sending;
    if (offset > 0)
        act(SendAction::TellResumed, offset);
    else if (m_mostAcknowledged > 0)
        act(SendAction::TellRestarted);
}

void SendMachine::onAllHeld()
{
    onFirstAcknowledgement(m_result.total);
    m_mostAcknowledged = m_result.total;
    m_state = State::AwaitingVerdict;
    startTimer(m_options.verdictTimeout());
}

void SendMachine::onVerdict(const SendEvent &event)
{
    // A printer that holds all bytes already acknowledges nothing.
    if (m_state == State::Offering && event.offset == m_result.total)
        onAllHeld();
    if (event.key != m_key && (isTransferring() || m_state == State::AwaitingVerdict)) {
        finish(Ending::PrinterFault, QStringLiteral("it checked another file"));
    } else if (isTransferring()) {
        finish(Ending::PrinterFault, QStringLiteral("it checked the file before it had it all"));
    } else if (m_state == State::AwaitingVerdict) {
        m_hasVerdict = true;
        m_result.checkState = event.code;
        finishOnceSettled();
    }
}

/// Comes once the transfer that it began has ended, by the end of the file unless cancelled.
void SendMachine::onAccepted(const SendEvent &event)
{
    if (m_state == State::Offering && event.key != m_key)
        finish(Ending::PrinterFault, QStringLiteral("it accepted another file"));
    if (m_state == State::Offering && event.offset == m_result.total)
        onAllHeld();
    if (m_state == State::Offering)
        onFirstAcknowledgement(event.offset);
    if (m_state == State::Sending) {
        m_result.fileFault = ZySendResult::FileFault::Unreadable;
        finish(Ending::LocalFile);
    } else if (m_state == State::AwaitingVerdict) {
        m_isAccepted = true;
        m_result.storedName = event.text;
        finishOnceSettled();
    }
}

void SendMachine::onDropped(const SendEvent &event)
{
    if (m_hasVerdict) // nothing is missing but the reply, which the client still holds back
        return;
    // "Accepted" is known by the offset; a chunk has been taken in every other state.
    if (m_state == State::Offering && event.offset >= 0)
        ++m_fruitlessOffers;
    else
        m_fruitlessOffers = 0;
    retry(Interruption::ConnectionLost, event);
}

void SendMachine::onTimeLimit()
{
    switch (m_state) {
    case State::Connecting: {
        SendEvent failure;
        failure.connectionFault = ZySendResult::ConnectionFault::TimedOut;
        retry(Interruption::ConnectFailed, failure);
        break;
    }
    case State::Offering:
    case State::Sending:
        retry(Interruption::Stalled);
        break;
    case State::AwaitingVerdict:
        retry(Interruption::NoVerdict);
        break;
    case State::Pausing:
        connect();
        break;
    case State::Cancelling:
        finish(Ending::Cancelled);
        break;
    case State::Idle:
    case State::Reading:
    case State::Ended:
        break;
    }
}

bool SendMachine::canCancel() const
{
    return m_state != State::Idle && m_state != State::Ended && m_state != State::AwaitingVerdict
        && m_state != State::Cancelling && !(m_state == State::Sending && isLastChunkUnderWay());
}

void SendMachine::onCancelRequested(const SendEvent &event)
{
    if (m_state == State::Cancelling)
        return;
    m_window = event.window;
    // Accepted, with the first chunk under way.
    if (m_state == State::Offering && event.offset >= 0)
        onFirstAcknowledgement(event.offset);
    if (m_state == State::Ended)
        return;
    if (!isTransferring() && m_state != State::AwaitingVerdict) {
        finish(Ending::Cancelled);
    } else if (!canCancel()) {
        finish(Ending::LeftForLater);
    } else {
        m_state = State::Cancelling;
        startTimer(m_options.cancelTimeout());
        act(SendAction::Cancel);
    }
}

bool SendMachine::isTransferring() const
{
    return m_state == State::Offering || m_state == State::Sending;
}

/// The printer completes the file with it, and a cancel after that deletes the complete file.
bool SendMachine::isLastChunkUnderWay() const
{
    return m_acknowledged + qint64(m_window) * chunkSize >= m_result.total;
}

qint64 SendMachine::nextAcknowledgement() const
{
    return std::min(m_acknowledged + chunkSize, m_result.total);
}

void SendMachine::retry(Interruption why, const SendEvent &cause)
{
    if (m_state == State::Idle || m_state == State::Pausing)
        return;
    m_result.connectionFault = cause.connectionFault;
    // A printer that now shows another certificate is not asked again.
    const bool isRefused = isCertificateRefused(cause.connectionFault);
    m_result.refusedFingerprint = isRefused ? cause.key : QString();
    if (m_state == State::Cancelling) {
        finish(Ending::Cancelled);
    } else if (!m_wasConnected || isRefused) {
        finish(Ending::NoConnection, cause.text);
    } else if (++m_failures > m_options.retries()) {
        const bool isStorage = cause.kind == SendEvent::Dropped
            && (cause.code == closeCodeInternalError
                || m_fruitlessOffers >= conclusiveFruitlessOffers);
        m_result.interruption = isStorage ? Interruption::None : why;
        finish(isStorage ? Ending::PrinterStorage : Ending::GaveUp, cause.text);
    } else {
        m_state = State::Pausing;
        const int pause = pauseBefore(m_failures, m_options);
        act(SendAction::Drop);
        act(SendAction::TellRetrying, pause);
        m_actions.last().attempt = m_failures;
        m_actions.last().interruption = why;
        startTimer(pause);
    }
}

/// The verdict and the reply that names the file come in either order.
void SendMachine::finishOnceSettled()
{
    // 0 is what a printer without an opinion answers.
    if (m_hasVerdict && m_isAccepted)
        finish(m_result.checkState == 0 || m_result.checkState == 1 ? Ending::Sent
                                                                    : Ending::CheckFailed);
}

void SendMachine::finish(Ending ending, const QString &detail)
{
    m_result.ending = ending;
    m_result.detail = detail;
    m_result.bytes = m_mostAcknowledged;
    m_state = State::Ended;
    act(SendAction::StopTimer);
    act(SendAction::Drop);
    act(SendAction::Finish);
    m_actions.last().result = ZySendResult(m_result);
}

void SendMachine::act(SendAction::Kind kind, qint64 number)
{
    SendAction action;
    action.kind = kind;
    action.number = number;
    m_actions.append(action);
}

} // namespace zyws
