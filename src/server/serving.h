// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which connection is being served at this moment, and so gets the replies.

#ifndef SERVING_H
#define SERVING_H

#include "zysslechoserver.h"

#include <QWebSocket>

/**
 * The span of one delivery. Spans nest when a host's slot spins the event loop, and the innermost
 * decides. A span without a socket is a handle's signal on its way to the host: replies sent from
 * there go nowhere.
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
