// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From what a person types to the URL of a printer.

#include "address.h"

namespace zypanel
{

QUrl printerUrl(const QString &text)
{
    QString address = text.trimmed();
    if (address.isEmpty())
        return {};
    if (!address.contains(QLatin1String("://")))
        address.prepend(QLatin1String("ws://"));
    QUrl url(address, QUrl::StrictMode);
    const bool isWebSocket
        = url.scheme() == QLatin1String("ws") || url.scheme() == QLatin1String("wss");
    if (!url.isValid() || !isWebSocket || url.host().isEmpty() || url.port() == 0)
        return {};
    return url;
}

} // namespace zypanel
