// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A peer that writes its WebSocket frames byte by byte to a TCP connection.

#include "rawtcppeer.h"

#include <QtEndian>

#include <sys/socket.h>

namespace zytest
{

RawTcpPeer::RawTcpPeer(quint16 port)
{
    QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] { read(); });
    QObject::connect(&m_socket, &QTcpSocket::connected, &m_socket, [this] {
        m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        write("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n");
    });
    m_socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    waitUntil([this] { return m_isUpgraded; });
}

RawTcpPeer::~RawTcpPeer()
{
    m_socket.disconnect();
}

QByteArray RawTcpPeer::frame(Opcode opcode, const QByteArray &payload, bool isLast)
{
    static constexpr char mask[] = {0x12, 0x34, 0x56, 0x78};
    QByteArray bytes;
    bytes.append(static_cast<char>((isLast ? 0x80 : 0x00) | opcode));
    if (payload.size() < 126) {
        bytes.append(static_cast<char>(0x80 | payload.size()));
    } else {
        bytes.append(static_cast<char>(0x80 | 127));
        char length[8];
        qToBigEndian(static_cast<quint64>(payload.size()), length);
        bytes.append(length, sizeof length);
    }
    bytes.append(mask, sizeof mask);
    for (int i = 0; i < payload.size(); ++i)
        bytes.append(static_cast<char>(payload.at(i) ^ mask[i % 4]));
    return bytes;
}

void RawTcpPeer::write(const QByteArray &bytes)
{
    m_socket.write(bytes);
    m_socket.flush();
}

void RawTcpPeer::sendFragments(Opcode opcode, const QList<QByteArray> &parts)
{
    for (int i = 0; i < parts.size(); ++i)
        write(frame(i == 0 ? opcode : Continuation, parts.at(i), i == parts.size() - 1));
}

QString RawTcpPeer::takeText()
{
    return waitUntil([this] { return !m_texts.isEmpty(); }) ? m_texts.takeFirst() : QString();
}

void RawTcpPeer::reset()
{
    const linger now{1, 0};
    ::setsockopt(static_cast<int>(m_socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &now,
                 sizeof now);
    m_socket.abort();
}

void RawTcpPeer::read()
{
    m_buffer += m_socket.readAll();
    if (!m_isUpgraded) {
        const auto end = m_buffer.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        m_isUpgraded = m_buffer.startsWith("HTTP/1.1 101");
        m_buffer.remove(0, end + 4);
    }
    while (readFrame()) { }
}

/// Takes one frame of the server, which are never masked; false when none is there whole.
bool RawTcpPeer::readFrame()
{
    if (m_buffer.size() < 2)
        return false;
    qint64 length = m_buffer.at(1) & 0x7f;
    int header = 2;
    if (length >= 126) {
        header = length == 126 ? 4 : 10;
        if (m_buffer.size() < header)
            return false;
        length = length == 126 ? qFromBigEndian<quint16>(m_buffer.constData() + 2)
                               : qFromBigEndian<qint64>(m_buffer.constData() + 2);
    }
    if (m_buffer.size() < header + length)
        return false;
    if ((m_buffer.at(0) & 0x0f) == Text)
        m_texts.append(QString::fromUtf8(m_buffer.mid(header, static_cast<int>(length))));
    m_buffer.remove(0, header + static_cast<int>(length));
    return true;
}

} // namespace zytest
