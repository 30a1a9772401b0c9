// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Notifications of the desktop, for what happens while the window is not looked at.

#include "desktopnotifier.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace zypanel
{

namespace
{

constexpr int desktopsChoice = -1; // how long it is shown
constexpr uchar normalUrgency = 1;
constexpr uchar criticalUrgency = 2;

/// The bus's text may be markup.
QString escaped(const QString &text)
{
    return text.toHtmlEscaped();
}

} // namespace

DesktopNotifier::DesktopNotifier()
    : m_connection(QStringLiteral("zypanel-%1").arg(reinterpret_cast<quintptr>(this)))
{
}

DesktopNotifier::~DesktopNotifier()
{
    QDBusConnection::disconnectFromBus(m_connection);
}

void DesktopNotifier::show(const QString &summary, const QString &text, bool isUrgent)
{
    const QDBusConnection bus
        = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connection);
    if (!bus.isConnected())
        return;
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage message
        = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                         service, QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("urgency"),
                             QVariant::fromValue(isUrgent ? criticalUrgency : normalUrgency)},
                            {QStringLiteral("desktop-entry"), QStringLiteral("zypanel")}};
    message.setArguments({QCoreApplication::applicationName(), 0U, QStringLiteral("zypanel"),
                          summary, escaped(text), QStringList(), hints, desktopsChoice});
    bus.send(message);
}

} // namespace zypanel
