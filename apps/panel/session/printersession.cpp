// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The session's connection: opening, noticing that it failed or died, closing.

#include "printersession.h"

#include <zysslechoclient.h>

namespace zypanel
{

namespace
{

constexpr int connectWatchInterval = 50; // ms

} // namespace

PrinterSession::PrinterSession(QObject *parent) : QObject(parent)
{
    m_connectWatch.setInterval(connectWatchInterval);
    m_stallTimer.setSingleShot(true);
    m_cancelTimer.setSingleShot(true);
    m_offerTimer.setSingleShot(true);
    setTimeouts({});
    connect(&m_connectWatch, &QTimer::timeout, this, &PrinterSession::watchConnecting);
    connect(&m_stallTimer, &QTimer::timeout, this, &PrinterSession::onStalled);
    connect(&m_cancelTimer, &QTimer::timeout, this, &PrinterSession::onCancelUnconfirmed);
    connect(&m_offerTimer, &QTimer::timeout, this, &PrinterSession::offerFile);
    connect(&m_pollTimer, &QTimer::timeout, this, &PrinterSession::poll);
}

PrinterSession::~PrinterSession() = default;

void PrinterSession::setTimeouts(const Timeouts &timeouts)
{
    m_timeouts = timeouts;
    m_stallTimer.setInterval(timeouts.transferStall);
    m_cancelTimer.setInterval(timeouts.cancelling);
    m_offerTimer.setInterval(timeouts.offeringAgain);
    m_pollTimer.setInterval(timeouts.polling);
}

void PrinterSession::connectTo(const QUrl &url, const QString &token)
{
    endClient();
    m_url = url;
    m_token = token;
    m_client = std::make_unique<ZySslEchoClient>(url);
    // The line stands idle while a chunk is compressed.
    m_client->setCompressionLevel(1);
    const auto *client = m_client.get();
    connect(client, &ZySslEchoClient::connected, this, &PrinterSession::onConnected);
    connect(client, &ZySslEchoClient::disconnected, this, &PrinterSession::onDisconnected);
    connect(client, &ZySslEchoClient::fileTransProgress, this,
            [this](const QString &, qlonglong total, qlonglong received) {
                onProgress(total, received);
            });
    connect(client, &ZySslEchoClient::finish, this,
            [this](const QString &, int checkState) { onFinished(checkState); });
    connect(client, &ZySslEchoClient::transError, this,
            [this](int code, const QString &) { onTransferError(code); });
    connect(client, &ZySslEchoClient::cancelFinished, this, &PrinterSession::onCancelled);
    connect(client, &ZySslEchoClient::printErrorCode, this, [this](int code, const QString &file) {
        Q_EMIT noticed(printAnswerNotice(code, file));
    });
    connect(client, &ZySslEchoClient::getPrinterStatusInfo, this, &PrinterSession::onStatusReply);
    connect(client, &ZySslEchoClient::jsonMessageReceived, this, &PrinterSession::onReply);
    m_connectingSince.start();
    m_connectWatch.start();
    setLink(Link::Connecting);
}

/// A first attempt that fails emits nothing; it shows in the socket's state only.
void PrinterSession::watchConnecting()
{
    if (m_client->socketConnectStatus() == QAbstractSocket::UnconnectedState)
        failConnecting(LinkFault::NoAnswer);
    else if (m_connectingSince.hasExpired(m_timeouts.connecting))
        failConnecting(LinkFault::TimedOut);
}

void PrinterSession::failConnecting(LinkFault fault)
{
    dropLink(linkFaultNotice(fault, printerName()));
}

void PrinterSession::onConnected()
{
    m_connectWatch.stop();
    setLink(Link::Open);
    Q_EMIT noticed({Severity::Good, tr("Connected to %1.").arg(printerName())});
    // A slot may have closed it again.
    if (m_link != Link::Open)
        return;
    m_client->versionCheckCmd();
    m_isStatusAwaited = false;
    m_isSilent = false;
    poll();
    m_pollTimer.start();
    if (m_resumeOnceConnected) {
        m_resumeOnceConnected = false;
        resumeTransfer();
    }
}

void PrinterSession::onDisconnected()
{
    LinkFault fault = LinkFault::Lost;
    if (m_transfer == Transfer::Cancelling)
        fault = LinkFault::LostWhileCancelling;
    else if (isTransferring())
        fault = LinkFault::LostWhileSending;
    dropLink(linkFaultNotice(fault, printerName()));
}

void PrinterSession::disconnectFromPrinter()
{
    if (m_link != Link::Closed)
        dropLink({Severity::Info, tr("Disconnected from %1.").arg(printerName())});
}

/// Closes the connection; a transfer under way becomes one that can be resumed.
void PrinterSession::dropLink(const Notice &notice)
{
    endClient();
    m_resumeOnceConnected = false;
    if (m_transfer == Transfer::Cancelling)
        setTransfer(Transfer::Idle);
    else if (isTransferring())
        setTransfer(Transfer::Interrupted);
    setStatus({});
    setLink(Link::Closed);
    Q_EMIT noticed(notice);
}

void PrinterSession::endClient()
{
    m_connectWatch.stop();
    m_pollTimer.stop();
    m_stallTimer.stop();
    m_cancelTimer.stop();
    m_offerTimer.stop();
    m_wantedParameters.clear();
    // Ends a send loop that may be under way further up the stack.
    m_client.reset();
}

QString PrinterSession::printerName() const
{
    return m_url.authority();
}

void PrinterSession::setLink(Link link)
{
    if (link == m_link)
        return;
    m_link = link;
    Q_EMIT linkChanged(link);
}

} // namespace zypanel
