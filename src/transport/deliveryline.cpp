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
    return m_waiting.empty();
}

void DeliveryLine::append(Delivery delivery)
{
    m_waiting.push_back(std::move(delivery));
    QMetaObject::invokeMethod(
        m_context, [this] { deliverNext(); }, Qt::QueuedConnection);
}

void DeliveryLine::deliverNext()
{
    const Delivery delivery = std::move(m_waiting.front());
    m_waiting.pop_front();
    delivery(); // may delete the context, and this line with it
}

} // namespace zyws
