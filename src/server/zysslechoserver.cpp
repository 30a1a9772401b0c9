// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The server: listening, the registry of connections, routing and replies.

#include "zysslechoserver.h"

#include "admission.h"
#include "deliveryqueue.h"
#include "envelope.h"
#include "linkoptions.h"
#include "liveness.h"
#include "messagelimits.h"
#include "report.h"
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

namespace
{

/// "192.168.1.20:50000", asked for while the connection is open: it is forgotten with its end.
QString peerText(const QWebSocket &socket)
{
    bool isIPv4 = false;
    const quint32 address = socket.peerAddress().toIPv4Address(&isIPv4);
    return (isIPv4 ? QHostAddress(address).toString()
                   : QLatin1Char('[') + socket.peerAddress().toString() + QLatin1Char(']'))
        + QLatin1Char(':') + QString::number(socket.peerPort());
}

} // namespace

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

void ZySslEchoServer::onNewConnection()
{
    QWebSocket *socket = m_pWebSocketServer->nextPendingConnection();
    if (!socket)
        return;
    qCDebug(lcZyServer) << "Your new Client connected:" << socket->peerName() << socket->origin();
    if (!isAdmitted(socket))
        return;
    connectSocket(socket);
    ZyWebHandle *handle = createHandle(socket);
    m_clients.append(socket);
    m_handles.append(handle);
    m_handleOf.insert(socket, handle);
}

/// False when there are too many connections; the socket is taken care of then.
bool ZySslEchoServer::isAdmitted(QWebSocket *socket)
{
    if (!m_admission)
        return true;
    QTcpSocket *tcp = m_admission->admit(socket, m_clients.size());
    if (tcp && m_liveness)
        m_liveness->watch(socket, tcp);
    return tcp;
}

void ZySslEchoServer::connectSocket(QWebSocket *socket)
{
    zyws::limitMessages(socket, m_options);
    connect(socket, &QWebSocket::textMessageReceived, this, [this, socket](const QString &message) {
        if (zyws::isTextTaken(socket, message, m_options))
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
    handle->m_peer = peerText(*socket);
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
        if (const auto *receiving = qobject_cast<ZyFileTransHandle *>(handle.data()))
            zyws::report(m_options, ZyServerOptions::Transfer::Interrupted, receiving->m_fileName,
                         receiving->m_peer);
        Q_EMIT fileTranDisconnet();
        if (!self)
            return false;
        if (!handle) // ended meanwhile, in a nested loop
            return true;
    }
    auto *transfer = qobject_cast<ZyFileTransHandle *>(handle.data());
    const bool isReceiving = transfer && transfer->m_isReceiving;
    if (isReceiving)
        transfer->onReceptionInterrupted();
    handle->onDisconnect();
    if (isReceiving)
        transfer->reportUselessFile();
    m_handles.removeOne(handle);
    m_handleOf.remove(socket);
    handle->deleteLater();
    return true;
}

/// Makes way for a transfer where the connection that receives has sent nothing for a time.
void ZySslEchoServer::endIdleReception()
{
    const QList<QWebSocket *> sockets = m_clients;
    for (QWebSocket *each : sockets) {
        const auto *handle = qobject_cast<ZyFileTransHandle *>(m_handleOf.value(each));
        // A finished file is being checked: the host is slow, not the peer.
        if (!m_liveness || !handle || !handle->m_isReceiving || handle->m_isCompleted
            || !m_liveness->isIdle(each))
            continue;
        const QPointer<QWebSocket> socket(each);
        {
            const Serving serving(this, socket);
            socketDisconnected(); // may delete this
        }
        if (socket)
            socket->abort();
        return; // no other receives
    }
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
