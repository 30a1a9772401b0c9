// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client's socket, held so that it outlives its own emissions.

#ifndef HELDSOCKET_H
#define HELDSOCKET_H

#include <QWebSocket>

#include <memory>

namespace zyws
{

/**
 * Owns a QWebSocket whose signals may end in a slot that deletes the owner.
 *
 * Deleted inside an emission of the socket's own, the socket would be gone when Qt returns into
 * it. So each slot connected to the socket opens an Emission; while one is open, the socket is only
 * marked, and is deleted by the event loop once the outermost has ended.
 */
class HeldSocket
{
    struct State {
        QWebSocket *socket;
        int emissions = 0;
        bool isReleased = false;
    };

public:
    class Emission
    {
    public:
        explicit Emission(const HeldSocket &held);
        ~Emission();

    private:
        Q_DISABLE_COPY(Emission)

        std::shared_ptr<State> m_state;
    };

    HeldSocket();
    ~HeldSocket();

    QWebSocket &socket() const { return *m_state->socket; }

private:
    Q_DISABLE_COPY(HeldSocket)

    std::shared_ptr<State> m_state;
};

} // namespace zyws

#endif // HELDSOCKET_H
