// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Base of the per-connection handle: what the server's routing knows of a connection.

#ifndef ZYWEBHANDLE_H
#define ZYWEBHANDLE_H

#include <QByteArray>
#include <QJsonObject>
#include <QObject>

#include "zywebsocket_export.h"

class QWebSocket;
class ZySslEchoServer;

/**
 * One connection as the server's routing sees it.
 *
 * Created by ZySslEchoServer for each accepted socket and owned by it. Lives in the server's
 * thread until the event loop runs after the socket's disconnect, or until the server is
 * destroyed, whichever is first. Has no own meta-object.
 */
class ZYWEBSOCKET_EXPORT ZyWebHandle : public QObject // clazy:exclude=missing-qobject-macro
{
public:
    /// The values of status().
    enum Status {
        Idle = 0,
        ReceivingFile = 2,
        CheckingPrintFile = 3,
    };

    /**
     * @param parent the ZySslEchoServer; with any other parent the handle must not be asked to do
     *        anything that needs one.
     * @param socket the connection; not owned, only compared by the server to route messages.
     */
    ZyWebHandle(QObject *parent, QWebSocket *socket);
    ~ZyWebHandle() override;

    /// One parsed text message.
    virtual void processJson(QJsonObject json) = 0;
    /// One binary message, from whichever connection it came.
    virtual void processBinary(QByteArray message) = 0;
    /// The socket has disconnected.
    virtual void onDisconnect() = 0;
    /// What the connection is busy with: a Status.
    virtual int status() = 0;

    /**
     * Sends one reply to the connection whose message is being handled at this moment, which need
     * not be this handle's. Outside the handling of a message the reply is dropped.
     */
    void sendMessage(QJsonObject json);

protected:
    /// Says after a call into the host, whose slots may spin the event loop, whether to go on.
    class HandleGuard;

    ZySslEchoServer *m_server; ///< null when the parent is not a server
    QWebSocket *m_socket; ///< the connection's; the server owns it

private:
    friend class ZySslEchoServer;

    bool m_isAbandoned = false; ///< the peer has left; only the deletion is outstanding
    int m_waiting = 0; ///< deliveries of this connection that have not run yet
};

#endif // ZYWEBHANDLE_H
