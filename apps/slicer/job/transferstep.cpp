// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sends one file: watches for stalls, reconnects, and has the printer resume what it holds.

#include "transferstep.h"

#include "resumeoffset.h"
#include "wirewords.h"

#include <zysslechoclient.h>

#include <QLoggingCategory>

#include <algorithm>

namespace zyslicer
{

namespace
{

Q_LOGGING_CATEGORY(lcSlicer, "zyslicer", QtDebugMsg)
using zysession::PrinterLink;
namespace wire = zysession::wire;

} // namespace

TransferStep::TransferStep(JobContext &context, const ModelFile &file) : Step(context), m_file(file)
{
    m_timeLimit.setSingleShot(true);
    connect(&m_timeLimit, &QTimer::timeout, this, &TransferStep::onTimeLimit);
    connect(&link(), &PrinterLink::opened, this, &TransferStep::onOpened);
    connect(&link(), &PrinterLink::failed, this, [this] {
        if (link().wasOpen())
            retry(QStringLiteral("no connection"));
        else
            endUnconnected();
    });
    connect(&link(), &PrinterLink::dropped, this,
            [this] { retry(QStringLiteral("connection lost")); });
}

void TransferStep::start()
{
    attempt();
}

void TransferStep::attempt()
{
    // The file may have gone since the last attempt.
    const Outcome check = checkModelFile(m_file);
    if (!check.isOk()) {
        end(check);
        return;
    }
    ++m_attempts;
    m_stage = Stage::Opening;
    m_storedName.clear();
    m_hasVerdict = false;
    link().open();
}

void TransferStep::onOpened()
{
    ZySslEchoClient *client = link().client();
    connect(client, &ZySslEchoClient::fileTransProgress, this, &TransferStep::onProgress);
    connect(client, &ZySslEchoClient::finish, this, &TransferStep::onFinish);
    connect(client, &ZySslEchoClient::transError, this, &TransferStep::onTransferError);
    connect(client, &ZySslEchoClient::jsonMessageReceived, this, &TransferStep::onMessage);
    connect(client, &ZySslEchoClient::cancelFinished, this, [this] {
        if (m_stage == Stage::Cancelling)
            endWith(ExitCode::Interrupted, QStringLiteral("interrupted"),
                    QStringLiteral("the printer has cancelled the transfer and deleted its part"));
    });
    m_stage = Stage::Offering;
    m_timeLimit.start(limits().stall);
    reportProgress(Event::Kind::Offered, 0, 0);
    client->setCompressionLevel(context().request.compressionLevel);
    client->sendFile(m_file.path, m_file.name);
}

void TransferStep::onProgress(const QString &path, qint64 total, qint64 received)
{
    Q_UNUSED(path)
    if (m_stage == Stage::Cancelling)
        return;
    if (m_stage == Stage::Offering) {
        m_stage = Stage::Sending;
        const qint64 offset = resumeOffset(received, total);
        if (offset > 0)
            reportProgress(Event::Kind::Resumed, offset, total);
        else if (m_mostReceived > 0)
            reportProgress(Event::Kind::Restarted, 0, total);
    }
    if (received > m_mostReceived) {
        m_mostReceived = received;
        m_failures = 0;
    }
    reportProgress(Event::Kind::Progress, received, total);
    if (received >= total) {
        m_stage = Stage::AwaitingVerdict;
        m_timeLimit.start(limits().check);
    } else {
        m_timeLimit.start(limits().stall);
    }
}

void TransferStep::onMessage(const QJsonObject &message)
{
    const QString word = message.value(wire::cmd).toString();
    // A printer that cannot read its reception file refuses without saying what.
    const bool isNamelessReply = word.isEmpty() && message.contains(wire::compress);
    if (word == wire::startFile || isNamelessReply)
        onStartFileReply(message);
    else if (word == wire::startData && message.value(wire::errorcode).toInt() != 0)
        endWith(ExitCode::Refused, QStringLiteral("the printer cannot store the data"),
                QStringLiteral("check the printer's storage"));
}

/// Told at once for a refusal; for an accepted file only once its send loop has ended.
void TransferStep::onStartFileReply(const QJsonObject &reply)
{
    if (reply.value(wire::errorcode).toInt() != 0) {
        if (m_stage != Stage::Cancelling)
            refused(reply);
        return;
    }
    // The printer resumes under the name it was first told, whatever name is offered now.
    m_storedName = reply.value(wire::filename).toString(m_file.name);
    completeWhenSettled();
}

void TransferStep::onFinish(const QString &path, int checkState)
{
    Q_UNUSED(path)
    m_hasVerdict = true;
    m_checkState = checkState;
    completeWhenSettled();
}

/// Positive codes are the printer's, whose reply follows in onMessage() and says more.
void TransferStep::onTransferError(int code)
{
    if (code < 0)
        end({ExitCode::LocalFile, QStringLiteral("file not readable"), m_file.path,
             QStringLiteral("check that it still exists and its permissions")});
}

void TransferStep::completeWhenSettled()
{
    // A client whose send loop has not ended would not hear the answer to the next file.
    if (!m_hasVerdict || m_storedName.isEmpty() || m_stage == Stage::Cancelling)
        return;
    m_timeLimit.stop();
    disconnect(link().client(), nullptr, this, nullptr);
    context().storedName = m_storedName;
    Event event;
    event.kind = Event::Kind::Stored;
    event.file = m_file.name;
    event.text = m_storedName;
    event.received = m_mostReceived;
    event.total = m_mostReceived;
    event.checkState = m_checkState;
    Q_EMIT reported(event);
    // 0 is what a printer without an opinion answers.
    if (m_checkState == 0 || m_checkState == 1)
        end();
    else
        endCheckFailed();
}

void TransferStep::endCheckFailed()
{
    // Printers may keep such names for themselves and say no more than this.
    const QString advice = m_storedName.startsWith(QLatin1Char('.'))
        ? QStringLiteral("the printer finds no valid model of this name (check state %1); it may "
                         "take no name that begins with a dot: give another one with --as")
        : QStringLiteral("the printer has stored the file but finds it no valid model (check "
                         "state %1); slice it again");
    endWith(ExitCode::CheckFailed, QStringLiteral("check failed"), advice.arg(m_checkState));
}

void TransferStep::onTimeLimit()
{
    const double seconds = m_timeLimit.interval() / 1000.0;
    switch (m_stage) {
    case Stage::Pausing:
        attempt();
        break;
    case Stage::Cancelling:
        link().close();
        endWith(ExitCode::Interrupted, QStringLiteral("interrupted"),
                QStringLiteral("the printer did not acknowledge the cancel; what it holds is "
                               "resumed when the file is sent again"));
        break;
    case Stage::AwaitingVerdict:
        retry(QStringLiteral("no check result for %1 s").arg(seconds));
        break;
    default:
        retry(QStringLiteral("no acknowledgement for %1 s").arg(seconds));
        break;
    }
}

void TransferStep::reportProgress(Event::Kind kind, qint64 received, qint64 total)
{
    Event event;
    event.kind = kind;
    event.file = m_file.name;
    event.received = received;
    event.total = total;
    Q_EMIT reported(event);
}

void TransferStep::refused(const QJsonObject &reply)
{
    m_timeLimit.stop();
    const int reason = reply.value(wire::wifistate).toInt();
    const int code = reply.value(wire::errorcode).toInt();
    if (code == wire::TokenRefused) {
        endTokenRejected();
    } else if (code == wire::FileBusy) {
        endWith(ExitCode::Refused, QStringLiteral("the printer cannot create the file"),
                QStringLiteral("check the printer's storage"));
    } else if (reason == wire::Receiving && m_attempts > 1) {
        // Most likely our own lost connection, which the printer has not noticed yet.
        retry(QStringLiteral("the printer is still receiving"));
    } else if (reason == wire::Receiving) {
        endWith(ExitCode::Busy, QStringLiteral("printer busy, it is receiving a file"),
                QStringLiteral("try again when that transfer has ended"));
    } else if (reason == wire::CheckingPrintFile) {
        endWith(ExitCode::Busy, QStringLiteral("printer busy, it is checking a file to print"),
                QStringLiteral("try again when the check has ended"));
    } else {
        endWith(ExitCode::Refused, QStringLiteral("refused by the printer"),
                QStringLiteral("it takes no files now; look with 'zyslicer status' whether it is "
                               "printing"));
    }
}

void TransferStep::retry(const QString &reason)
{
    link().close();
    m_timeLimit.stop();
    if (m_stage == Stage::Cancelling) {
        endWith(
            ExitCode::Interrupted, QStringLiteral("interrupted"),
            QStringLiteral("connection lost before the printer acknowledged the cancel; what it "
                           "holds is resumed when the file is sent again"));
        return;
    }
    if (++m_failures > limits().retries) {
        endWith(
            ExitCode::GivenUp,
            QStringLiteral("transfer given up after %1 attempts (%2)").arg(m_attempts).arg(reason),
            QStringLiteral("check the network and the printer and send again; what the printer "
                           "still holds of it, if anything, is resumed"));
        return;
    }
    m_stage = Stage::Pausing;
    Event event;
    event.kind = Event::Kind::Retrying;
    event.file = m_file.name;
    event.text = reason;
    event.retry = m_failures;
    event.delay = backOff(limits(), m_failures);
    Q_EMIT reported(event);
    m_timeLimit.start(event.delay);
}

void TransferStep::interrupt()
{
    switch (m_stage) {
    case Stage::Offering:
    case Stage::Sending:
        qCDebug(lcSlicer) << "cancelling" << m_file.name;
        m_stage = Stage::Cancelling;
        m_timeLimit.start(std::min(limits().stall, limits().reply));
        link().client()->cancel();
        break;
    case Stage::AwaitingVerdict: // a cancel now would delete the finished file
        endWith(ExitCode::Interrupted, QStringLiteral("interrupted"),
                QStringLiteral("the printer has the whole file and is checking it"));
        break;
    case Stage::Opening:
    case Stage::Pausing:
        endWith(ExitCode::Interrupted, QStringLiteral("interrupted"),
                QStringLiteral("nothing was being sent; what the printer holds is resumed when the "
                               "file is sent again"));
        break;
    case Stage::Cancelling:
        break;
    }
}

void TransferStep::endWith(ExitCode code, const QString &what, const QString &advice)
{
    m_timeLimit.stop();
    end({code, what, QStringLiteral("%1 to %2").arg(m_file.name, printer()), advice});
}

} // namespace zyslicer
