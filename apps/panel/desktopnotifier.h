// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Notifications of the desktop, for what happens while the window is not looked at.

#ifndef PANEL_DESKTOPNOTIFIER_H
#define PANEL_DESKTOPNOTIFIER_H

#include <QString>

namespace zypanel
{

/// Speaks to the session's D-Bus, where most desktops listen; elsewhere nothing is shown.
class DesktopNotifier
{
public:
    DesktopNotifier();
    ~DesktopNotifier();

    /// Returns at once. An urgent one stays until it is dismissed.
    void show(const QString &summary, const QString &text, bool isUrgent);

private:
    Q_DISABLE_COPY(DesktopNotifier)

    QString m_connection; ///< the name of the one to the bus
};

} // namespace zypanel

#endif // PANEL_DESKTOPNOTIFIER_H
