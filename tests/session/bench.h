// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A connection for commands to a printer behind a proxy, with one exchange on it.

#ifndef BENCH_H
#define BENCH_H

#include "cuttingproxy.h"
#include "exchange.h"
#include "testprinter.h"
#include "texts.h"
#include "waiting.h"

#include <memory>
#include <optional>

namespace zytest
{

using zysession::Exchange;
using zysession::PrinterLink;
using zysession::TimeLimits;
using Fault = PrinterLink::Fault;

using Ask = std::function<void(Exchange &)>;

inline QUrl urlOf(quint16 port, const char *scheme = "ws")
{
    return QUrl("%1://127.0.0.1:%2"_s.arg(QLatin1String(scheme)).arg(port));
}

/// Whether the link is open, or why it is not.
inline std::optional<Fault> outcomeOfOpening(PrinterLink &link)
{
    bool hasEnded = false;
    const QObject context;
    QObject::connect(&link, &PrinterLink::opened, &context, [&] { hasEnded = true; });
    QObject::connect(&link, &PrinterLink::failed, &context, [&] { hasEnded = true; });
    link.open();
    if (hasEnded || !waitUntil([&] { return hasEnded; }))
        return {};
    return link.fault();
}

/// A connection to a printer behind a proxy, with one exchange on it.
struct Bench {
    explicit Bench(const TimeLimits &limits = {}) : link(proxy.url(), limits)
    {
        outcomeOfOpening(link);
        exchange = std::make_unique<Exchange>(link);
    }

    /// What came of it; ends that come twice are none.
    Exchange::Result resultOf(const Ask &ask)
    {
        QVector<Exchange::Result> results;
        const auto connection
            = QObject::connect(exchange.get(), &Exchange::ended,
                               [&](const Exchange::Result &result) { results.append(result); });
        ask(*exchange);
        waitUntil([&] { return !results.isEmpty(); });
        zytest::spinOnce();
        QObject::disconnect(connection);
        if (results.size() != 1)
            qFatal("%d results", int(results.size()));
        return results.first();
    }
    Exchange::Ending endingOf(const Ask &ask) { return resultOf(ask).ending; }

    TestPrinter printer;
    CuttingProxy proxy{printer.port()};
    PrinterLink link;
    std::unique_ptr<Exchange> exchange;
};

} // namespace zytest

#endif // BENCH_H
