// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A WebSocket client on a plain socket, so light that the server's time is what one measures.

#include "rawpeer.h"

#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace zybench
{

namespace
{

constexpr char finalText = '\x81';
constexpr unsigned char extendedLength = 126;

int connectedSocket(quint16 port)
{
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot connect");
    const int on = 1;
    ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return descriptor;
}

} // namespace

RawPeer::RawPeer(quint16 port) : m_descriptor(connectedSocket(port))
{
    send(QByteArrayLiteral("GET / HTTP/1.1\r\n"
                           "Host: 127.0.0.1\r\n"
                           "Upgrade: websocket\r\n"
                           "Connection: Upgrade\r\n"
                           "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n"
                           "Sec-WebSocket-Version: 13\r\n\r\n"));
}

RawPeer::~RawPeer()
{
    ::close(m_descriptor);
}

void RawPeer::awaitUpgrade()
{
    const QByteArray end = QByteArrayLiteral("\r\n\r\n");
    while (!m_buffer.contains(end))
        readMore();
    if (!m_buffer.startsWith("HTTP/1.1 101"))
        throw std::runtime_error("upgrade refused");
    m_buffer.remove(0, m_buffer.indexOf(end) + end.size());
}

void RawPeer::send(const QByteArray &frame)
{
    if (::send(m_descriptor, frame.constData(), static_cast<size_t>(frame.size()), MSG_NOSIGNAL)
        != frame.size())
        throw std::runtime_error("cannot send");
}

QByteArray RawPeer::receive()
{
    int header = 2;
    while (m_buffer.size() < header)
        readMore();
    if (m_buffer.at(0) != finalText)
        throw std::runtime_error("not a text message in one frame");
    int size = static_cast<unsigned char>(m_buffer.at(1));
    if (size > extendedLength)
        throw std::runtime_error("frame too long");
    if (size == extendedLength) {
        header += 2;
        while (m_buffer.size() < header)
            readMore();
        size = qFromBigEndian<quint16>(m_buffer.constData() + 2);
    }
    while (m_buffer.size() < header + size)
        readMore();
    QByteArray text = m_buffer.mid(header, size);
    m_buffer.remove(0, header + size);
    return text;
}

void RawPeer::readMore()
{
    char bytes[4096];
    const ssize_t count = ::recv(m_descriptor, bytes, sizeof bytes, 0);
    if (count < 1)
        throw std::runtime_error("connection ended");
    m_buffer.append(bytes, static_cast<int>(count));
}

QByteArray maskedTextFrame(const QByteArray &text)
{
    const QByteArray mask = QByteArrayLiteral("\x3a\x7c\x15\xe2");
    constexpr char maskedFlag = '\x80';
    QByteArray frame(1, finalText);
    if (text.size() < extendedLength) {
        frame.append(static_cast<char>(maskedFlag | text.size()));
    } else {
        frame.append(static_cast<char>(maskedFlag | extendedLength));
        char length[2];
        qToBigEndian(static_cast<quint16>(text.size()), length);
        frame.append(length, sizeof length);
    }
    frame.append(mask);
    for (int i = 0; i < text.size(); ++i)
        frame.append(static_cast<char>(text.at(i) ^ mask.at(i % mask.size())));
    return frame;
}

} // namespace zybench
