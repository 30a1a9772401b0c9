// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whose message the server handles, and so who gets the replies.

#ifndef SERVING_H
#define SERVING_H

#include "zysslechoserver.h"

#include <QPointer>
#include <QWebSocket>

/**
 * The scope in which one connection's message is handled, and so gets the replies. Scopes nest when
 * a host's slot spins the event loop, and the innermost counts. One without a socket encloses a
 * handle's signal to the host: replies sent from there are dropped.
 */
class ZySslEchoServer::Serving
{
public:
    Serving(ZySslEchoServer *server, QWebSocket *socket)
        : m_server(server), m_socket(socket), m_outer(server->m_serving)
    {
        server->m_serving = this;
    }
    ~Serving()
    {
        if (m_server)
            m_server->m_serving = m_outer;
    }

    QWebSocket *socket() const { return m_socket; }

private:
    Q_DISABLE_COPY(Serving)

    QPointer<ZySslEchoServer> m_server;
    QPointer<QWebSocket> m_socket;
    Serving *m_outer;
};

#endif // SERVING_H
