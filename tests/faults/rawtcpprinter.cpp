// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer that shakes hands and then writes whatever bytes it is told to.

#include "rawtcpprinter.h"

#include <QCryptographicHash>

#include <utility>

#include <sys/socket.h>

namespace zytest
{

RawTcpPrinter::RawTcpPrinter(Speech speech) : m_speech(std::move(speech))
{
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("the raw printer cannot listen");
}

QUrl RawTcpPrinter::url() const
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(m_server.serverPort()));
}

void RawTcpPrinter::hangUp()
{
    if (!m_client || m_client->state() != QAbstractSocket::ConnectedState)
        return;
    // Not a close: it would throw away what the client has not read yet once the client writes.
    m_client->flush();
    ::shutdown(static_cast<int>(m_client->socketDescriptor()), SHUT_WR);
}

void RawTcpPrinter::accept()
{
    QTcpSocket *client = m_server.nextPendingConnection();
    m_client = client;
    QObject::connect(client, &QTcpSocket::readyRead, client,
                     [this, client, request = QByteArray()]() mutable {
                         const bool isDone = request.contains("\r\n\r\n");
                         request += client->readAll();
                         if (!isDone && request.contains("\r\n\r\n"))
                             speakTo(client, request);
                     });
    QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
}

/// After the answer to its handshake.
void RawTcpPrinter::speakTo(QTcpSocket *client, const QByteArray &request)
{
    constexpr char header[] = "Sec-WebSocket-Key: ";
    const auto start = request.indexOf(header) + static_cast<int>(sizeof header) - 1;
    const QByteArray key = request.mid(start, request.indexOf('\r', start) - start);
    const QByteArray accept = QCryptographicHash::hash(key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11",
                                                       QCryptographicHash::Sha1)
                                  .toBase64();
    client->write(
        "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
        "Sec-WebSocket-Accept: "
        + accept + "\r\n\r\n");
    ++m_connectionCount;
    client->write(m_speech());
}

} // namespace zytest
