// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Low delay and keep-alive for the TCP connections under the WebSockets.

#ifndef LINKOPTIONS_H
#define LINKOPTIONS_H

class QTcpSocket;
class QWebSocket;
class QWebSocketServer;

namespace zyws
{

/**
 * Sets low delay and keep-alive on a connected client socket.
 *
 * Without low delay Nagle's algorithm and delayed acknowledgements cost about 40 ms on many
 * chunks of a transfer. QWebSocket asks for it only before its TCP socket exists.
 */
void setLinkOptions(const QWebSocket &socket);

/// The same on a TCP connection.
void setLinkOptions(QTcpSocket &socket);

/// The same for every connection that @p server will accept: they inherit the listener's options.
void setLinkOptions(const QWebSocketServer &server);

} // namespace zyws

#endif // LINKOPTIONS_H
