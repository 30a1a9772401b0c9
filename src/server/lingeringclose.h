// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Lets a peer that is turned away read why.

#ifndef LINGERINGCLOSE_H
#define LINGERINGCLOSE_H

class QTcpSocket;
class QWebSocket;

namespace zyws
{

/**
 * Makes @p socket, on the TCP connection @p tcp, end gently when the server closes it for a
 * violation.
 *
 * Qt closes the TCP connection at once. With bytes of the peer's still unread that is a TCP reset,
 * which overtakes the close frame, so that the peer never sees its code.
 */
void lingerOnClose(QWebSocket *socket, QTcpSocket *tcp);

} // namespace zyws

#endif // LINGERINGCLOSE_H
