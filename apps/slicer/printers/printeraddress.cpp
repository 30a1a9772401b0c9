// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printer names and addresses as people type them.

#include "printeraddress.h"

#include <algorithm>

namespace
{

constexpr int longestName = 64;

} // namespace

bool isPrinterName(const QString &text)
{
    // Neither '.' nor ':', so that no address is mistaken for a name.
    const auto isAllowed = [](QChar c) {
        return c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_');
    };
    return !text.isEmpty() && text.size() <= longestName
        && std::all_of(text.begin(), text.end(), isAllowed);
}

Outcome parsePrinterAddress(const QString &text, QUrl &url)
{
    const bool hasScheme = text.contains(QLatin1String("://"));
    url = QUrl(hasScheme ? text : QStringLiteral("ws://") + text, QUrl::StrictMode);
    const bool isWebSocket
        = url.scheme() == QLatin1String("ws") || url.scheme() == QLatin1String("wss");
    if (url.isValid() && isWebSocket && !url.host().isEmpty() && url.port(1) > 0)
        return {};
    return {ExitCode::Usage, QStringLiteral("not a printer address"), text,
            QStringLiteral("give a URL such as ws://192.168.1.20:8080")};
}
