// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The session's transfer: sending, cancelling, resuming.

#include "printersession.h"
#include "replykeys.h"

#include <zysslechoclient.h>

#include <QFileInfo>
#include <QJsonObject>
#include <QLocale>

namespace zypanel
{

namespace
{

constexpr qint64 chunkSize = Q_INT64_C(1024) * 1024; // of the protocol
constexpr int alreadyReceiving = 3; // "wifistate" of a refusal
constexpr int furtherOffers = 5;

/// Where a transfer began whose first acknowledgement says @p received.
qint64 offsetBefore(qint64 received)
{
    return received <= 0 ? 0 : (received - 1) / chunkSize * chunkSize;
}

} // namespace

bool PrinterSession::isTransferring() const
{
    return m_transfer == Transfer::Offered || m_transfer == Transfer::Sending
        || m_transfer == Transfer::Cancelling;
}

bool PrinterSession::send(const QString &path, const QString &name)
{
    if (m_link != Link::Open || isTransferring())
        return false;
    const FileFault fault = checkLocalFile(path);
    const FileFault nameFault = checkPrinterName(name);
    if (fault != FileFault::None || nameFault != FileFault::None) {
        Q_EMIT noticed(fault != FileFault::None ? fileFaultNotice(fault, path)
                                                : fileFaultNotice(nameFault, name));
        return false;
    }
    m_isResuming = false;
    m_job = {path, name.trimmed(), 0, QFileInfo(path).size()};
    offerFile();
    return true;
}

void PrinterSession::offerFile()
{
    m_stallTimer.start();
    setTransfer(Transfer::Offered);
    // A slot may have cancelled it or closed the connection.
    if (m_transfer == Transfer::Offered)
        m_client->sendFile(m_job.path, m_job.name);
}

void PrinterSession::onProgress(qint64 total, qint64 received)
{
    if (!isTransferring())
        return;
    m_stallTimer.start();
    m_job.total = total;
    m_job.received = received;
    if (m_transfer == Transfer::Offered) {
        const qint64 offset = offsetBefore(received);
        if (offset > 0)
            Q_EMIT noticed({Severity::Info,
                            tr("The printer already holds %1 of %2; the rest is sent.")
                                .arg(QLocale().formattedDataSize(offset, 1), m_job.name)});
        setTransfer(Transfer::Sending);
    }
    Q_EMIT transferProgress(received, total);
}

void PrinterSession::onFinished(int checkState)
{
    // While cancelling, the printer's answer to that is still to come.
    if (m_transfer != Transfer::Offered && m_transfer != Transfer::Sending)
        return;
    m_stallTimer.stop();
    setTransfer(Transfer::Idle);
    Q_EMIT fileStored(m_job.name);
    Q_EMIT noticed(checkStateNotice(checkState, m_job.name));
}

/// The client's own failures; what the printer refuses comes whole through onFileRefused().
void PrinterSession::onTransferError(int code)
{
    if (code >= 0 || !isTransferring())
        return;
    m_stallTimer.stop();
    setTransfer(Transfer::Idle);
    Q_EMIT noticed(transferErrorNotice(code));
    // This client starts no further transfer, and the printer waits for data: begin anew.
    if (code == -2)
        connectTo(m_url, m_token);
}

void PrinterSession::onFileRefused(const QJsonObject &message)
{
    if (m_transfer != Transfer::Offered)
        return;
    m_stallTimer.stop();
    const int wifiState = message.value(reply::wifistate).toInt();
    // Most likely it has not noticed yet that the interrupted connection is gone.
    if (m_isResuming && wifiState == alreadyReceiving && m_offersLeft > 0) {
        --m_offersLeft;
        m_offerTimer.start();
        return;
    }
    setTransfer(m_isResuming ? Transfer::Interrupted : Transfer::Idle);
    Q_EMIT noticed(transferErrorNotice(message.value(reply::errorcode).toInt(), wifiState));
}

void PrinterSession::cancelTransfer()
{
    if (m_transfer != Transfer::Offered && m_transfer != Transfer::Sending)
        return;
    m_stallTimer.stop();
    m_offerTimer.stop();
    m_cancelTimer.start();
    setTransfer(Transfer::Cancelling);
    m_client->cancel();
}

void PrinterSession::onCancelled()
{
    // A cancel before the printer's first answer is confirmed twice.
    if (m_transfer != Transfer::Cancelling)
        return;
    m_cancelTimer.stop();
    setTransfer(Transfer::Idle);
    Q_EMIT noticed({Severity::Info,
                    tr("Sending %1 was cancelled; the printer has deleted what it had received.")
                        .arg(m_job.name)});
}

void PrinterSession::onStalled()
{
    dropLink(linkFaultNotice(LinkFault::Stalled, printerName()));
}

void PrinterSession::onCancelUnconfirmed()
{
    dropLink(linkFaultNotice(LinkFault::CancelUnconfirmed, printerName()));
}

void PrinterSession::resumeTransfer()
{
    if (m_transfer != Transfer::Interrupted)
        return;
    if (m_link != Link::Open) {
        connectTo(m_url, m_token);
        m_resumeOnceConnected = true;
        return;
    }
    const FileFault fault = checkLocalFile(m_job.path);
    if (fault != FileFault::None) {
        Q_EMIT noticed(fileFaultNotice(fault, m_job.path));
        return;
    }
    m_isResuming = true;
    m_offersLeft = furtherOffers;
    offerFile();
}

void PrinterSession::forgetTransfer()
{
    if (m_transfer == Transfer::Interrupted)
        setTransfer(Transfer::Idle);
}

void PrinterSession::setTransfer(Transfer transfer)
{
    if (transfer == m_transfer)
        return;
    const bool wasTransferring = isTransferring();
    m_transfer = transfer;
    // Status requests rest while a file is being sent; an old one may never have been answered.
    if (wasTransferring && !isTransferring())
        m_isStatusAwaited = false;
    Q_EMIT transferChanged(transfer);
}

} // namespace zypanel
