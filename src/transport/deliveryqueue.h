// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A first-in first-out queue between a socket's signals and their handlers.

#ifndef DELIVERYQUEUE_H
#define DELIVERYQUEUE_H

#include <deque>
#include <functional>

class QObject;

namespace zyws
{

/**
 * Takes messages out of Qt's frame reader before they are handled.
 *
 * A handler may spin the event loop or delete sockets. Run inside a signal of QWebSocket, it would
 * enter the frame reader a second time (Qt then drops a frame that has arrived by half) or delete
 * it while it runs. So the socket's signal only appends here, and the event loop of the context
 * runs the deliveries one by one, in order, nested loops included.
 *
 * Lives as a member of its context and dies with it; deliveries still waiting are dropped.
 */
class DeliveryQueue
{
public:
    using Delivery = std::function<void()>;

    explicit DeliveryQueue(QObject *context);

    /// True when nothing waits. The delivery being run does not count.
    bool isEmpty() const;

    /// Runs @p delivery from the event loop, after all that was appended before.
    void append(Delivery delivery);

private:
    void deliverNext();

    QObject *m_context;
    std::deque<Delivery> m_waiting;
};

} // namespace zyws

#endif // DELIVERYQUEUE_H
