// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer that was found, and how a user names one that is to be found.

#include "foundprinter.h"

#include <algorithm>
#include <tuple>

namespace zydiscovery
{

namespace
{

const QLatin1String scheme("dnssd:");

} // namespace

bool operator==(const FoundPrinter &left, const FoundPrinter &right)
{
    const auto all = [](const FoundPrinter &each) {
        return std::tie(each.name, each.url, each.host, each.protocol, each.wantsToken);
    };
    return all(left) == all(right);
}

QString addressByName(const QString &name)
{
    return scheme + name;
}

QString nameInAddress(const QString &text)
{
    const QString address = text.trimmed();
    if (!address.startsWith(scheme, Qt::CaseInsensitive))
        return {};
    return QLatin1String("") + address.mid(scheme.size());
}

FoundPrinter printerNamed(const QString &name, const QVector<FoundPrinter> &printers)
{
    const auto found
        = std::find_if(printers.begin(), printers.end(), [&](const FoundPrinter &each) {
              return each.name.compare(name, Qt::CaseInsensitive) == 0;
          });
    return found == printers.end() ? FoundPrinter() : *found;
}

} // namespace zydiscovery
