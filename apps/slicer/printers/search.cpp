// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that announce themselves: the one of a name, and the command "discover".

#include "search.h"

#include "jsonview.h"
#include "standardoutput.h"
#include "table.h"

#include <QEventLoop>
#include <QTimer>

namespace zyslicer
{

namespace
{

using zydiscovery::FoundPrinter;
using zydiscovery::PrinterBrowser;

constexpr int patience = 5000; // ms, for a printer that is named

Outcome notFound(const QString &name, const QVector<FoundPrinter> &printers)
{
    QStringList names;
    for (const FoundPrinter &printer : printers)
        names.append(QStringLiteral("\"%1\"").arg(printer.name));
    return {ExitCode::NoConnection, QStringLiteral("no printer of this name is announced"), name,
            names.isEmpty() ? QStringLiteral("no other is, either; give its address")
                            : QStringLiteral("announced are ") + names.join(QLatin1String(", "))};
}

void writeJson(const QVector<FoundPrinter> &printers)
{
    for (const FoundPrinter &printer : printers)
        writeJsonLine(QStringLiteral("found"),
                      {{QStringLiteral("name"), printer.name},
                       {QStringLiteral("url"), printer.url.toString()},
                       {QStringLiteral("host"), printer.host},
                       {QStringLiteral("address"), printer.url.host()},
                       {QStringLiteral("port"), printer.url.port()},
                       {QStringLiteral("protocol"), printer.protocol},
                       {QStringLiteral("tls"), printer.isEncrypted()},
                       {QStringLiteral("token"), printer.wantsToken}});
}

void writeTable(const QVector<FoundPrinter> &printers)
{
    const auto word = [](bool isSo) { return isSo ? QStringLiteral("yes") : QStringLiteral("no"); };
    QVector<QStringList> table{{QStringLiteral("NAME"), QStringLiteral("ADDRESS"),
                                QStringLiteral("PORT"), QStringLiteral("TLS"),
                                QStringLiteral("TOKEN")}};
    for (const FoundPrinter &printer : printers)
        table.append({printer.name, printer.url.host(), QString::number(printer.url.port()),
                      word(printer.isEncrypted()), word(printer.wantsToken)});
    writeOut(tableText(table));
}

} // namespace

Outcome Search::wait(int limit, const std::function<bool()> &isDone)
{
    const auto isOver = [&] { return !m_browser.fault().isEmpty() || isDone(); };
    QEventLoop loop;
    const auto check = [&] {
        if (isOver())
            loop.quit();
    };
    QObject::connect(&m_browser, &PrinterBrowser::changed, &loop, check);
    if (limit >= 0)
        QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    if (!isOver())
        loop.exec();
    if (m_browser.fault().isEmpty())
        return {};
    return {ExitCode::NoDiscovery, QStringLiteral("printers cannot be looked for"),
            m_browser.fault(), QStringLiteral("give the printer's address")};
}

Outcome Search::find(const QString &name, bool isWaiting, zysession::Printer &printer)
{
    FoundPrinter found;
    Outcome outcome = wait(isWaiting ? -1 : patience, [&] {
        found = zydiscovery::printerNamed(name, m_browser.printers());
        return !found.name.isEmpty();
    });
    if (outcome.isOk() && found.name.isEmpty())
        return notFound(name, m_browser.printers());
    printer = {};
    printer.url = found.url;
    printer.announcedName = found.name;
    return outcome;
}

Outcome Search::findAll(int limit, QVector<FoundPrinter> &printers)
{
    Outcome outcome = wait(limit, [&] { return m_browser.isComplete(); });
    printers = m_browser.printers();
    if (outcome.isOk() && printers.isEmpty())
        return {ExitCode::NoConnection, QStringLiteral("no printer found"),
                QStringLiteral("none is announced on this network"),
                QStringLiteral("give the printer's address")};
    return outcome;
}

Outcome runDiscoverCommand(const Request &request)
{
    QVector<FoundPrinter> printers;
    Outcome outcome = Search().findAll(request.searchTime, printers);
    if (!outcome.isOk())
        return outcome;
    if (request.isJson)
        writeJson(printers);
    else if (!request.isQuiet)
        writeTable(printers);
    return outcome;
}

} // namespace zyslicer
