// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client's socket, held so that slots may do as they like while Qt is inside it.

#ifndef HELDSOCKET_H
#define HELDSOCKET_H

#include <QPointer>
#include <QTcpSocket>
#include <QVector>
#include <QWebSocket>

#include <functional>
#include <memory>

namespace zyws
{

/**
 * Owns a QWebSocket whose signals may end in a slot that deletes the owner, opens the socket again
 * or spins the event loop.
 *
 * Deleted inside one of its emissions, the socket would be gone when Qt returns into it; so
 * would the TCP socket below it, which QWebSocket::open() replaces. So each slot connected to the
 * socket opens an Emission: both live until the outermost has ended.
 *
 * Inside its frame reader and its close(), Qt also goes on to use the connection after the signal.
 * A new one, opened by the slot, would be closed or lose a frame. whenIdle() waits for Qt to
 * leave both.
 */
class HeldSocket
{
    struct State;

public:
    class Emission
    {
    public:
        explicit Emission(const HeldSocket &held) : Emission(held.m_state) { }
        explicit Emission(std::shared_ptr<State> state);
        ~Emission();

    private:
        Q_DISABLE_COPY(Emission)

        std::shared_ptr<State> m_state;
    };

    HeldSocket();
    ~HeldSocket();

    QWebSocket &socket() const;

    void open(const QUrl &url);
    /// Closes with code 1000. What waits in whenIdle() runs before this returns, unless Qt is
    /// still in its frame reader, and may delete the owner.
    void close();
    /// Runs @p action once Qt is neither in its frame reader nor in close(): mostly at once, and
    /// always before control returns to the event loop. Dropped when the owner is gone by then.
    void whenIdle(std::function<void()> action);
    /// Runs @p emission, which Qt makes in the event that reads frames, but before it reads any.
    void outsideReader(const std::function<void()> &emission);

private:
    class ReaderFilter;

    static void occupy(std::shared_ptr<State> state, const std::function<void()> &work);

    Q_DISABLE_COPY(HeldSocket)

    std::shared_ptr<State> m_state;
    ReaderFilter *m_filter; ///< the socket's child
};

} // namespace zyws

#endif // HELDSOCKET_H
