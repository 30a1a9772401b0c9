// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whom the server lets in: how many, from which web pages, over TLS, and how long they may take.

#ifndef ADMISSION_H
#define ADMISSION_H

#include "zyserveroptions.h"

#include <QPointer>
#include <QTcpServer>
#include <QVector>

class QTcpSocket;
class QWebSocket;
class QWebSocketServer;

namespace zyws
{

/**
 * Accepts TCP connections in place of the QWebSocketServer, which gets them for their handshake.
 *
 * QWebSocketServer's own listener counts nobody, keeps up to 800 KiB for an endless handshake, and
 * stops accepting for good when the process has run out of descriptors.
 */
class Admission : public QTcpServer // clazy:exclude=missing-qobject-macro
{
public:
    /// True when @p options ask for anything that needs an Admission.
    static bool isWanted(const ZyServerOptions &options);

    /// A child of @p upgrader.
    Admission(QWebSocketServer *upgrader, const ZyServerOptions &options);

    /// The TCP connection under @p socket, whose handshake is done while @p standing others stand;
    /// null when there are too many of them, and @p socket is closed and about to be deleted.
    QTcpSocket *admit(QWebSocket *socket, qsizetype standing);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void beginHandshake(QTcpSocket *socket);
    void encrypt(QTcpSocket *socket);
    bool endHandshake(const QTcpSocket *socket);
    QTcpSocket *tcpSocketOf(const QWebSocket *socket) const;
    bool isOriginAllowed(const QString &origin) const;

    QWebSocketServer *m_upgrader;
    const ZyServerOptions m_options;
    QVector<QTcpSocket *> m_shakingHands; ///< in order of arrival
};

} // namespace zyws

#endif // ADMISSION_H
