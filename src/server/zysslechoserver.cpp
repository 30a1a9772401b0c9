// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The server: listening, the registry of connections, routing and replies.

#include "zysslechoserver.h"

#include "deliveryqueue.h"
#include "envelope.h"
#include "linkoptions.h"
#include "serverlog.h"
#include "zyfiletranshandle.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QWebSocket>
#include <QWebSocketServer>

#include <utility>

Q_LOGGING_CATEGORY(lcZyServer, "zywebsocket.server", QtDebugMsg)

/**
 * The scope in which one connection's message is handled, and so gets the replies. Scopes nest when
 * a host's slot spins the event loop, and the innermost counts. One without a socket encloses a
 * handle's signal to the host: replies sent from there are dropped.
 */
class ZySslEchoServer::Serving
{
public:
    Serving(ZySslEchoServer *server, QWebSocket *socket)
        : m_server(server), m_socket(socket), m_outer(server->m_serving)
    {
        server->m_serving = this;
    }
    ~Serving()
    {
        if (m_server)
            m_server->m_serving = m_outer;
    }

    QWebSocket *socket() const { return m_socket; }

private:
    Q_DISABLE_COPY(Serving)

    QPointer<ZySslEchoServer> m_server;
    QPointer<QWebSocket> m_socket;
    Serving *m_outer;
};

ZySslEchoServer::ZySslEchoServer(quint16 port, QString certFile, QString keyFile, QString fileDir,
                                 WifiFileState *wifiFileState, QObject *parent)
    : QObject(parent), m_wifiFileState(wifiFileState),
      m_deliveries(std::make_unique<zyws::DeliveryQueue>(this))
{
    qCDebug(lcZyServer) << "hh";
    m_pWebSocketServer = new QWebSocketServer(QStringLiteral("SSL Echo Server"),
                                              QWebSocketServer::NonSecureMode, this);
    readUnusedTlsConfiguration(certFile, keyFile);
    if (m_pWebSocketServer->listen(QHostAddress::Any, port)) {
        zyws::setLinkOptions(*m_pWebSocketServer);
        qCDebug(lcZyServer) << "SSL Echo Server listening on port" << port;
        connect(m_pWebSocketServer, &QWebSocketServer::newConnection, this,
                &ZySslEchoServer::onNewConnection);
        connect(m_pWebSocketServer, &QWebSocketServer::sslErrors, this,
                &ZySslEchoServer::onSslErrors);
    }
    qCDebug(lcZyServer) << "server start ";
    m_fileDir = fileDir;
}

ZySslEchoServer::~ZySslEchoServer()
{
    qCDebug(lcZyServer) << "~";
    m_pWebSocketServer->close();
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
    QSslConfiguration configuration;
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setLocalCertificate(QSslCertificate(&certificate, QSsl::Pem));
    configuration.setPrivateKey(QSslKey(&key, QSsl::Rsa, QSsl::Pem));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    configuration.setProtocol(QSsl::TlsV1SslV3);
#endif
}

bool ZySslEchoServer::isListening() const
{
    return m_pWebSocketServer->isListening();
}

quint16 ZySslEchoServer::serverPort() const
{
    return m_pWebSocketServer->serverPort();
}

void ZySslEchoServer::onNewConnection()
{
    QWebSocket *socket = m_pWebSocketServer->nextPendingConnection();
    if (!socket)
        return;
    qCDebug(lcZyServer) << "Your new Client connected:" << socket->peerName() << socket->origin();
    connectSocket(socket);
    ZyWebHandle *handle = createHandle(socket);
    m_clients.append(socket);
    m_handles.append(handle);
    m_handleOf.insert(socket, handle);
}

void ZySslEchoServer::connectSocket(QWebSocket *socket)
{
    connect(socket, &QWebSocket::textMessageReceived, this, [this, socket](const QString &message) {
        deliver(socket, [this, message] { processTextMessage(message); });
    });
    connect(socket, &QWebSocket::binaryMessageReceived, this,
            [this, socket](const QByteArray &message) {
                deliver(socket, [this, message] { processBinaryMessage(message); });
            });
    connect(socket, &QWebSocket::binaryFrameReceived, this, &ZySslEchoServer::binaryFrameReceived);
    connect(socket, &QWebSocket::disconnected, this,
            [this, socket] { deliver(socket, [this] { socketDisconnected(); }); });
}

ZyWebHandle *ZySslEchoServer::createHandle(QWebSocket *socket)
{
    auto *handle = new ZyFileTransHandle(this, socket);
    handle->m_fileDir = m_fileDir;
    connect(handle, &ZyFileTransHandle::finish, this, [this](const QString &path, int &checkState) {
        const Serving relaying(this, nullptr);
        onFinish(path, checkState);
    });
    connect(handle, &ZyFileTransHandle::checkFile, this,
            [this](const QString &path, int &checkState) {
                const Serving relaying(this, nullptr);
                Q_EMIT checkFile(path, checkState);
            });
    connect(handle, &ZyFileTransHandle::cancle, this, [this] {
        const Serving relaying(this, nullptr);
        Q_EMIT cancle();
    });
    connect(handle, &ZyFileTransHandle::fileTranStart, this, [this] {
        const Serving relaying(this, nullptr);
        Q_EMIT fileTranStart();
    });
    return handle;
}

void ZySslEchoServer::deliver(QWebSocket *socket, std::function<void()> work)
{
    m_deliveries->append([this, peer = QPointer<QWebSocket>(socket), work = std::move(work)] {
        if (!peer)
            return;
        const QPointer<ZySslEchoServer> self(this);
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
    if (ZyWebHandle *handle = m_handleOf.value(servedSocket()))
        handle->processJson(messageToJson(message));
}

void ZySslEchoServer::processBinaryMessage(QByteArray message)
{
    const auto handles = watchedHandles();
    for (const QPointer<ZyWebHandle> &handle : handles) {
        if (handle)
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

void ZySslEchoServer::socketDisconnected()
{
    qCDebug(lcZyServer) << "Client disconnected";
    const QPointer<QWebSocket> socket(servedSocket());
    if (!socket)
        return;
    if (!endHandle(socket))
        return;
    m_clients.removeOne(socket);
    if (socket)
        socket->deleteLater();
}

/// Takes the socket's handle out of the registry; false when the server is gone afterwards.
bool ZySslEchoServer::endHandle(QWebSocket *socket)
{
    const QPointer<ZyWebHandle> handle(m_handleOf.value(socket));
    if (!handle)
        return true;
    const bool isAlreadyEnding = std::exchange(handle->m_isAbandoned, true);
    if (handle->status() == ZyWebHandle::ReceivingFile && !isAlreadyEnding) {
        const QPointer<ZySslEchoServer> self(this);
        Q_EMIT fileTranDisconnet();
        if (!self)
            return false;
        if (!handle) // ended meanwhile, in a nested loop
            return true;
    }
    handle->onDisconnect();
    m_handles.removeOne(handle);
    m_handleOf.remove(socket);
    handle->deleteLater();
    return true;
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
