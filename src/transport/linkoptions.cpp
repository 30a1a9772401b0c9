// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Low delay and keep-alive for the TCP connections under the WebSockets.

#include "linkoptions.h"

#include <QTcpSocket>
#include <QWebSocket>
#include <QWebSocketServer>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

namespace zyws
{

namespace
{

void switchOn(qintptr descriptor, int level, int option)
{
#ifdef Q_OS_WIN
    const BOOL on = TRUE;
    ::setsockopt(static_cast<SOCKET>(descriptor), level, option,
                 reinterpret_cast<const char *>(&on), sizeof on);
#else
    const int on = 1;
    ::setsockopt(static_cast<int>(descriptor), level, option, &on, sizeof on);
#endif
}

} // namespace

void setLinkOptions(const QWebSocket &socket)
{
    // All of them: the socket of the connection before may still wait for its deferred deletion.
    const auto sockets = socket.findChildren<QTcpSocket *>();
    for (QTcpSocket *tcp : sockets)
        setLinkOptions(*tcp);
}

void setLinkOptions(QTcpSocket &socket)
{
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
}

void setLinkOptions(const QWebSocketServer &server)
{
    // On the listener, since an accepted QWebSocket does not give away its TCP socket.
#if QT_VERSION_MAJOR >= 6
    const qintptr listener = server.socketDescriptor();
#else
    const qintptr listener = server.nativeDescriptor();
#endif
    switchOn(listener, IPPROTO_TCP, TCP_NODELAY);
    switchOn(listener, SOL_SOCKET, SO_KEEPALIVE);
}

} // namespace zyws
