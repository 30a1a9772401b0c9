// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's end that does the WebSocket protocol by hand, so that a test decides every byte.

#include "rawprinter.h"

#include "emitlater.h"
#include "processview.h"
#include "scriptedprinter.h"

#include <QCryptographicHash>
#include <QHostAddress>
#include <QTcpServer>
#include <QTimer>
#include <QtEndian>

#include <utility>

#include <sys/socket.h>

namespace zytest
{

namespace
{

enum Opcode { Continuation = 0, Text = 1, Binary = 2, Close = 8, Ping = 9, Pong = 10 };

QByteArray frame(int opcode, const QByteArray &payload)
{
    QByteArray bytes;
    bytes.append(static_cast<char>(0x80 | opcode));
    if (payload.size() < 126) {
        bytes.append(static_cast<char>(payload.size()));
    } else {
        Q_ASSERT(payload.size() < 65536);
        bytes.append(static_cast<char>(126));
        bytes.append(static_cast<char>(payload.size() >> 8));
        bytes.append(static_cast<char>(payload.size() & 0xff));
    }
    return bytes + payload;
}

QByteArray headerValue(const QByteArray &request, const QByteArray &name)
{
    for (const QByteArray &line : request.split('\n')) {
        if (line.toLower().startsWith(name.toLower() + ':'))
            return line.mid(name.size() + 1).trimmed();
    }
    return {};
}

QByteArray handshakeAnswer(const QByteArray &request)
{
    const QByteArray key = headerValue(request, "Sec-WebSocket-Key");
    const QByteArray accept = QCryptographicHash::hash(key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11",
                                                       QCryptographicHash::Sha1)
                                  .toBase64();
    return "HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
           "Sec-WebSocket-Accept: "
        + accept + "\r\n\r\n";
}

} // namespace

RawPrinter::RawPrinter(QObject *parent) : QObject(parent), m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, &RawPrinter::accept);
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("the raw printer cannot listen");
}

RawPrinter::~RawPrinter()
{
    if (m_peer)
        m_peer->disconnect(this);
}

QUrl RawPrinter::url() const
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(port()));
}

quint16 RawPrinter::port() const
{
    return m_server->serverPort();
}

quint16 RawPrinter::peerPort() const
{
    return m_peer ? m_peer->peerPort() : quint16(0);
}

bool RawPrinter::isPeerConnected() const
{
    return m_peer && m_isOpen && m_peer->state() == QAbstractSocket::ConnectedState;
}

QByteArray RawPrinter::textFrame(const QString &text)
{
    return frame(Text, text.toUtf8());
}

QByteArray RawPrinter::textFrame(const QJsonObject &message)
{
    return textFrame(compactText(message));
}

QByteArray RawPrinter::closeFrame(int code)
{
    QByteArray payload(2, Qt::Uninitialized);
    qToBigEndian(static_cast<quint16>(code), payload.data());
    return frame(Close, payload);
}

QTcpSocket &RawPrinter::current() const
{
    if (!m_peer)
        qFatal("the raw printer has no connection");
    return *m_peer;
}

void RawPrinter::write(const QByteArray &bytes)
{
    current().write(bytes);
    current().flush();
}

void RawPrinter::stopReading()
{
    disconnect(&current(), &QTcpSocket::readyRead, this, &RawPrinter::onReadyRead);
    current().setReadBufferSize(1);
}

void RawPrinter::writeSplit(const QByteArray &bytes, int position)
{
    writeOnceRead({bytes.left(position), bytes.mid(position)});
}

void RawPrinter::writeByteByByte(const QByteArray &bytes)
{
    QByteArrayList segments;
    for (const char byte : bytes)
        segments.append(QByteArray(1, byte));
    writeOnceRead(segments);
}

/// The client lives in this process, so the kernel knows whether it has read everything.
void RawPrinter::writeOnceRead(const QByteArrayList &segments)
{
    if (!m_peer || segments.isEmpty())
        return;
    const bool isRead = m_peer->bytesToWrite() == 0 && unreadBytes(peerPort(), port()) == 0;
    if (isRead)
        write(segments.constFirst());
    QTimer::singleShot(0, m_peer,
                       [this, left = isRead ? segments.mid(1) : segments] { writeOnceRead(left); });
}

void RawPrinter::drop()
{
    current().disconnectFromHost();
}

void RawPrinter::hangUp()
{
    if (!isPeerConnected())
        return;
    m_peer->flush();
    ::shutdown(static_cast<int>(m_peer->socketDescriptor()), SHUT_WR);
}

void RawPrinter::reset()
{
    const linger noTime{1, 0};
    ::setsockopt(static_cast<int>(current().socketDescriptor()), SOL_SOCKET, SO_LINGER, &noTime,
                 sizeof noTime);
    current().abort();
}

void RawPrinter::accept()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection()) {
        if (m_peer) {
            m_peer->disconnect(this);
            m_peer->deleteLater();
        }
        m_peer = socket;
        m_isOpen = false;
        m_incoming.clear();
        m_message.clear();
        ++m_connectionCount;
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::readyRead, this, &RawPrinter::onReadyRead);
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            socket->deleteLater();
            m_peer.clear();
            emitLater(this, &RawPrinter::peerDisconnected);
        });
        onReadyRead();
    }
}

void RawPrinter::onReadyRead()
{
    m_incoming += m_peer->readAll();
    if (!m_isOpen && !readHandshake())
        return;
    while (readFrame()) { }
}

bool RawPrinter::readHandshake()
{
    const auto end = m_incoming.indexOf("\r\n\r\n");
    if (end < 0)
        return false;
    const QByteArray request = m_incoming.left(end);
    m_incoming.remove(0, end + 4);
    m_isOpen = true;
    write(handshakeAnswer(request) + m_greeting);
    emitLater(this, &RawPrinter::peerConnected);
    return true;
}

/// Takes one whole frame off what has arrived; false when there is none.
bool RawPrinter::readFrame()
{
    const auto *bytes = reinterpret_cast<const uchar *>(m_incoming.constData());
    if (m_incoming.size() < 2)
        return false;
    qint64 length = bytes[1] & 0x7f;
    const int lengthBytes = length == 126 ? 2 : length == 127 ? 8 : 0;
    const int headerSize = 2 + lengthBytes + 4; // a client always masks
    if (m_incoming.size() < headerSize)
        return false;
    if (lengthBytes == 2)
        length = qFromBigEndian<quint16>(bytes + 2);
    else if (lengthBytes == 8)
        length = qFromBigEndian<qint64>(bytes + 2);
    if (m_incoming.size() < headerSize + length)
        return false;
    const QByteArray mask = m_incoming.mid(headerSize - 4, 4);
    QByteArray payload = m_incoming.mid(headerSize, static_cast<int>(length));
    for (int i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<char>(payload.at(i) ^ mask.at(i % 4));
    const uchar first = bytes[0];
    m_incoming.remove(0, static_cast<int>(headerSize + length));
    handleFrame(first & 0x0f, (first & 0x80) != 0, payload);
    return true;
}

void RawPrinter::handleFrame(int opcode, bool isFinal, const QByteArray &payload)
{
    switch (opcode) {
    case Ping:
        m_pings.append(payload);
        if (m_answersPings)
            write(frame(Pong, payload));
        return;
    case Close:
        m_closeCodes.append(payload.size() < 2 ? 0 : qFromBigEndian<quint16>(payload.constData()));
        if (m_answersClose)
            write(frame(Close, payload));
        return;
    case Pong:
        return;
    default:
        break;
    }
    if (opcode != Continuation)
        m_messageOpcode = opcode;
    m_message += payload;
    if (!isFinal)
        return;
    const QByteArray message = std::exchange(m_message, QByteArray());
    if (m_messageOpcode == Text) {
        m_texts.append(QString::fromUtf8(message));
        emitLater(this, &RawPrinter::textReceived, m_texts.constLast());
    } else {
        m_chunks.append(message);
        emitLater(this, &RawPrinter::chunkReceived, message);
    }
}

} // namespace zytest
