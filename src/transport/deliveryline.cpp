// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A first-in first-out line between a socket's signals and their handlers.

#include "deliveryline.h"

#include <QMetaObject>
#include <QObject>

#include <utility>

namespace zyws
{

DeliveryLine::DeliveryLine(QObject *context) : m_context(context) { }

bool DeliveryLine::isEmpty() const
{
    return m_waiting.isEmpty();
}

void DeliveryLine::append(Delivery delivery)
{
    m_waiting.enqueue(std::move(delivery));
    QMetaObject::invokeMethod(
        m_context, [this] { deliverNext(); }, Qt::QueuedConnection);
}

void DeliveryLine::deliverNext()
{
    const Delivery delivery = m_waiting.dequeue();
    delivery(); // may delete the context, and this line with it
}

} // namespace zyws
