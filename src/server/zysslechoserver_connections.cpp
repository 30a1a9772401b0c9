// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A connection's life in the server: from its acceptance to its end.

#include "admission.h"
#include "liveness.h"
#include "messagelimits.h"
#include "report.h"
#include "serverlog.h"
#include "serving.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <QWebSocket>
#include <QWebSocketServer>

#include <utility>

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
