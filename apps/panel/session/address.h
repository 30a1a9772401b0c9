// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From what a person types to the URL of a printer.

#ifndef PANEL_ADDRESS_H
#define PANEL_ADDRESS_H

#include <QString>
#include <QUrl>

namespace zypanel
{

/// The URL for "ws://host:port", or for "host:port" with "ws://" left out; an empty URL for
/// anything that names no printer.
QUrl printerUrl(const QString &text);

} // namespace zypanel

#endif // PANEL_ADDRESS_H
