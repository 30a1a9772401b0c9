// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command "printers": lists, adds and removes saved printers.

#include "printerscommand.h"

#include "jsonview.h"
#include "printerbook.h"
#include "request.h"
#include "terminal.h"

#include <algorithm>

namespace
{

void writeJson(const QVector<Printer> &printers)
{
    for (const Printer &printer : printers)
        writeJsonLine({{QStringLiteral("name"), printer.label},
                       {QStringLiteral("url"), printer.url.toString()}});
}

void writeTable(const QVector<Printer> &printers)
{
    int width = 0;
    for (const Printer &printer : printers)
        width = std::max(width, printer.label.size());
    for (const Printer &printer : printers)
        terminal::write(printer.label.leftJustified(width + 2) + printer.url.toString()
                        + QLatin1Char('\n'));
}

} // namespace

Outcome runPrintersCommand(const Request &request, PrinterBook &book)
{
    if (request.command == Request::Command::PrintersAdd)
        return book.add(request.savedName, request.savedUrl);
    if (request.command == Request::Command::PrintersRemove)
        return book.remove(request.savedName);
    QVector<Printer> printers;
    Outcome outcome = book.list(printers);
    if (request.isJson)
        writeJson(printers);
    else if (!request.isQuiet)
        writeTable(printers);
    return outcome;
}
