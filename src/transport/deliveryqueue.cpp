// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A first-in first-out queue between a socket's signals and their handlers.

#include "deliveryqueue.h"

#include <QMetaObject>
#include <QObject>

#include <utility>

namespace zyws
{

DeliveryQueue::DeliveryQueue(QObject *context) : m_context(context) { }

bool DeliveryQueue::isEmpty() const
{
    return m_waiting.empty();
}

void DeliveryQueue::append(Delivery delivery)
{
    m_waiting.push_back(std::move(delivery));
    QMetaObject::invokeMethod(
        m_context, [this] { deliverNext(); }, Qt::QueuedConnection);
}

void DeliveryQueue::deliverNext()
{
    const Delivery delivery = std::move(m_waiting.front());
    m_waiting.pop_front();
    delivery(); // may delete the context, and this queue with it
}

} // namespace zyws
