// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The server: listening, routing and replies.

#include "zysslechoserver.h"

#include "admission.h"
#include "deliveryqueue.h"
#include "envelope.h"
#include "linkoptions.h"
#include "liveness.h"
#include "messagelimits.h"
#include "serverlog.h"
#include "serving.h"
#include "zywebhandle.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QWebSocket>
#include <QWebSocketServer>

#include <utility>

Q_LOGGING_CATEGORY(lcZyServer, "zywebsocket.server", QtDebugMsg)

ZySslEchoServer::ZySslEchoServer(quint16 port, QString certFile, QString keyFile, QString fileDir,
                                 WifiFileState *wifiFileState, QObject *parent)
    : QObject(parent), m_wifiFileState(wifiFileState),
      m_deliveries(std::make_unique<zyws::DeliveryQueue>(this))
{
    qCDebug(lcZyServer) << "hh";
    m_pWebSocketServer = new QWebSocketServer(QStringLiteral("SSL Echo Server"),
                                              QWebSocketServer::NonSecureMode, this);
    readUnusedTlsConfiguration(certFile, keyFile);
    listen(port);
    m_fileDir = fileDir;
}

ZySslEchoServer::ZySslEchoServer(quint16 port, const QString &fileDir,
                                 const ZyServerOptions &options, QObject *parent)
    : QObject(parent), m_fileDir(fileDir), m_wifiFileState(nullptr), m_options(options),
      m_deliveries(std::make_unique<zyws::DeliveryQueue>(this))
{
    m_pWebSocketServer = new QWebSocketServer(QStringLiteral("SSL Echo Server"),
                                              QWebSocketServer::NonSecureMode, this);
    if (zyws::Admission::isWanted(m_options))
        m_admission = new zyws::Admission(m_pWebSocketServer, m_options);
    if (m_options.silence() > 0)
        m_liveness = new zyws::Liveness(m_options.silence(), this);
    listen(port);
}

void ZySslEchoServer::listen(quint16 port)
{
    const QHostAddress wanted = m_options.listenAddress();
    const QHostAddress address = wanted.isNull() ? QHostAddress(QHostAddress::Any) : wanted;
    const bool isThere = m_admission ? m_admission->listen(address, port)
                                     : m_pWebSocketServer->listen(address, port);
    if (isThere) {
        if (!m_admission)
            zyws::setLinkOptions(*m_pWebSocketServer);
        qCDebug(lcZyServer) << "SSL Echo Server listening on port" << port;
        connect(m_pWebSocketServer, &QWebSocketServer::newConnection, this,
                &ZySslEchoServer::onNewConnection);
        connect(m_pWebSocketServer, &QWebSocketServer::sslErrors, this,
                &ZySslEchoServer::onSslErrors);
    }
    qCDebug(lcZyServer) << "server start ";
}

ZySslEchoServer::~ZySslEchoServer()
{
    qCDebug(lcZyServer) << "~";
    m_pWebSocketServer->close();
    if (m_admission)
        m_admission->close();
    QList<QPointer<QWebSocket>> sockets;
    for (QWebSocket *socket : std::as_const(m_clients)) {
        socket->disconnect(this);
        sockets.append(socket);
    }
    // Ending a connection calls the host, whose slot may end others in a nested event loop.
    for (const QPointer<QWebSocket> &socket : std::as_const(sockets)) {
        if (!socket || !m_clients.contains(socket))
            continue;
        {
            const Serving serving(this, socket);
            socketDisconnected();
        }
        delete socket;
    }
}

void ZySslEchoServer::readUnusedTlsConfiguration(const QString &certFile,
                                                 const QString &keyFile) const
{
    // Deliberate: read and dropped. Deployed slicers connect with plain ws://.
    QFile certificate(certFile);
    QFile key(keyFile);
    certificate.open(QIODevice::ReadOnly);
    key.open(QIODevice::ReadOnly);
    const QByteArray certificateText = certificate.readAll();
    const QByteArray keyText = key.readAll();
    if (certificateText.isEmpty() && keyText.isEmpty())
        return; // nothing to decode, so the TLS library with its 5 MiB is not loaded
    QSslConfiguration configuration;
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setLocalCertificate(QSslCertificate(certificateText, QSsl::Pem));
    configuration.setPrivateKey(QSslKey(keyText, QSsl::Rsa, QSsl::Pem));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    configuration.setProtocol(QSsl::TlsV1SslV3);
#endif
}

bool ZySslEchoServer::isListening() const
{
    return m_admission ? m_admission->isListening() : m_pWebSocketServer->isListening();
}

quint16 ZySslEchoServer::serverPort() const
{
    return m_admission ? m_admission->serverPort() : m_pWebSocketServer->serverPort();
}

const ZyServerOptions &ZySslEchoServer::options() const
{
    return m_options;
}

void ZySslEchoServer::deliver(QWebSocket *socket, std::function<void()> work)
{
    if (ZyWebHandle *handle = m_handleOf.value(socket))
        zyws::limitBacklog(socket, ++handle->m_waiting, m_options);
    m_deliveries->append([this, peer = QPointer<QWebSocket>(socket), work = std::move(work)] {
        if (!peer)
            return;
        const QPointer<ZySslEchoServer> self(this);
        if (ZyWebHandle *handle = m_handleOf.value(peer))
            --handle->m_waiting;
        {
            const Serving serving(this, peer);
            work();
        }
        if (self)
            flushReplies();
    });
}

QWebSocket *ZySslEchoServer::servedSocket() const
{
    // sender() is for a slot that a foreign signal invokes; it walks over all connections.
    return m_serving ? m_serving->socket() : qobject_cast<QWebSocket *>(sender());
}

QList<QPointer<ZyWebHandle>> ZySslEchoServer::watchedHandles() const
{
    return {m_handles.begin(), m_handles.end()};
}

void ZySslEchoServer::processTextMessage(QString message)
{
    if (m_options.maxTextMessage() > 0 && !zyws::isFlat(message))
        return;
    if (ZyWebHandle *handle = m_handleOf.value(servedSocket()))
        handle->processJson(messageToJson(message));
}

void ZySslEchoServer::processBinaryMessage(QByteArray message)
{
    ZyWebHandle *own = m_options.keepsTransfersApart() ? m_handleOf.value(servedSocket()) : nullptr;
    const auto handles = watchedHandles();
    for (const QPointer<ZyWebHandle> &handle : handles) {
        if (handle && (!m_options.keepsTransfersApart() || handle == own))
            handle->processBinary(message);
    }
}

void ZySslEchoServer::onTextMessageReceived(QString message)
{
    const auto handles = watchedHandles();
    for (const QPointer<ZyWebHandle> &handle : handles) {
        if (handle)
            handle->processJson(zyws::parseMessage(message));
    }
}

void ZySslEchoServer::binaryFrameReceived(const QByteArray &frame, bool isLastFrame)
{
    Q_UNUSED(frame)
    Q_UNUSED(isLastFrame)
}

void ZySslEchoServer::onSslErrors(const QList<QSslError> &errors)
{
    Q_UNUSED(errors)
    qCDebug(lcZyServer) << "Ssl errors occurred";
}

void ZySslEchoServer::sendJsonMessage(const QJsonObject &json)
{
    QWebSocket *socket = servedSocket();
    if (!socket)
        return;
    socket->sendTextMessage(JsonToString(json));
    zyws::limitUnread(socket, m_options);
    if (m_serving)
        m_replied.append(socket);
}

/// Sends the buffered replies now instead of in the next pass of the event loop, which takes long
/// with 500 connections. Once for all messages that arrived together: a flush each would wake each
/// peer as often.
void ZySslEchoServer::flushReplies()
{
    if (!m_deliveries->isEmpty())
        return;
    const auto sockets = std::exchange(m_replied, {});
    for (const QPointer<QWebSocket> &socket : sockets) {
        if (socket)
            socket->flush();
    }
}

QJsonObject ZySslEchoServer::messageToJson(QString message) const
{
    return zyws::parseMessage(message);
}

QString ZySslEchoServer::JsonToString(const QJsonObject &json) const
{
    return zyws::messageText(json);
}
