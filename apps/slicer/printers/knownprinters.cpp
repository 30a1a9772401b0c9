// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers as the command line names them, and the command "printers".

#include "knownprinters.h"

#include "jsonview.h"
#include "standardoutput.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

using zysession::Printer;
using zysession::SavedPrinters;
using zysession::SettingsFault;

Outcome settingsOutcome(SettingsFault fault, const SavedPrinters &saved)
{
    const QString alone = QStringLiteral("it is left as it is; name another file with --settings");
    switch (fault) {
    case SettingsFault::None:
        break;
    case SettingsFault::NotAFile:
        return {ExitCode::LocalFile, QStringLiteral("settings are no regular file"), saved.file(),
                alone};
    case SettingsFault::NotReadable:
        return {ExitCode::LocalFile, QStringLiteral("settings not readable"), saved.file(), alone};
    case SettingsFault::NotSettings:
        return {ExitCode::LocalFile, QStringLiteral("not a settings file"), saved.file(), alone};
    case SettingsFault::NotWritable:
        return {ExitCode::LocalFile, QStringLiteral("settings not writable"), saved.file(),
                QStringLiteral("check its permissions, or name another file with --settings")};
    }
    return {};
}

Outcome notAnAddress(const QString &text)
{
    return {ExitCode::Usage, QStringLiteral("not a printer address"), text,
            QStringLiteral("give a URL such as ws://192.168.1.20:8080")};
}

/// The settings are read only for a saved name: URLs need none.
Outcome resolve(SavedPrinters &saved, const QString &nameOrUrl, Printer &printer)
{
    const bool isName = zysession::isPrinterName(nameOrUrl);
    if (isName) {
        Outcome outcome = settingsOutcome(saved.read(), saved);
        if (!outcome.isOk())
            return outcome;
    }
    printer = saved.resolve(nameOrUrl);
    if (!printer.url.isEmpty())
        return {};
    if (!isName)
        return notAnAddress(nameOrUrl);
    return {ExitCode::Usage, QStringLiteral("unknown printer"), nameOrUrl,
            QStringLiteral("give a URL such as ws://192.168.1.20:8080, or save the name "
                           "with 'zyslicer printers add'")};
}

Outcome findOnlyPrinter(SavedPrinters &saved, QVector<Printer> &printers)
{
    Outcome outcome = settingsOutcome(saved.read(), saved);
    printers = saved.printers();
    if (!outcome.isOk() || printers.size() == 1)
        return outcome;
    return {ExitCode::Usage, QStringLiteral("no printer named"),
            QStringLiteral("%1 saved printers to choose from").arg(printers.size()),
            QStringLiteral("give --to with a URL or a saved name")};
}

Outcome addPrinter(const Request &request, SavedPrinters &saved)
{
    if (!zysession::isPrinterName(request.savedName))
        return {ExitCode::Usage, QStringLiteral("not a printer name"), request.savedName,
                QStringLiteral("use letters, digits, '-' and '_', at most 64")};
    const QUrl url = zysession::printerUrl(request.savedUrl);
    if (url.isEmpty())
        return notAnAddress(request.savedUrl);
    const SettingsFault fault = saved.read();
    if (fault != SettingsFault::None)
        return settingsOutcome(fault, saved);
    // A printer that moves to another address keeps its token.
    const QString token
        = request.token.isNull() ? saved.find(request.savedName).token : request.token;
    return settingsOutcome(saved.save({request.savedName, url, token}), saved);
}

Outcome removePrinter(const QString &name, SavedPrinters &saved)
{
    const SettingsFault fault = saved.read();
    if (fault != SettingsFault::None)
        return settingsOutcome(fault, saved);
    if (!zysession::isPrinterName(name) || saved.find(name).name.isEmpty())
        return {ExitCode::Usage, QStringLiteral("no such printer"), name,
                QStringLiteral("see the saved ones with 'zyslicer printers'")};
    return settingsOutcome(saved.remove(name), saved);
}

void writeJson(const QVector<Printer> &printers)
{
    for (const Printer &printer : printers)
        writeJsonLine({{QStringLiteral("name"), printer.name},
                       {QStringLiteral("url"), printer.url.toString()}});
}

void writeTable(const QVector<Printer> &printers)
{
    int width = 0;
    for (const Printer &printer : printers)
        width = std::max(width, int(printer.name.size()));
    for (const Printer &printer : printers)
        writeOut(printer.name.leftJustified(width + 2) + printer.url.toString()
                 + QLatin1Char('\n'));
}

} // namespace

Outcome findPrinters(const Request &request, QVector<Printer> &printers)
{
    SavedPrinters saved(request.settingsFile);
    if (request.printers.isEmpty())
        return findOnlyPrinter(saved, printers);
    for (const QString &nameOrUrl : request.printers) {
        Printer printer;
        Outcome outcome = resolve(saved, nameOrUrl, printer);
        if (!outcome.isOk())
            return outcome;
        const auto isSame = [&](const Printer &other) { return other.url == printer.url; };
        if (std::any_of(printers.cbegin(), printers.cend(), isSame))
            return {ExitCode::Usage, QStringLiteral("printer named twice"), nameOrUrl,
                    QStringLiteral("name each printer once")};
        printers.append(printer);
    }
    return {};
}

Outcome runPrintersCommand(const Request &request)
{
    SavedPrinters saved(request.settingsFile);
    if (request.command == Request::Command::PrintersAdd)
        return addPrinter(request, saved);
    if (request.command == Request::Command::PrintersRemove)
        return removePrinter(request.savedName, saved);
    Outcome outcome = settingsOutcome(saved.read(), saved);
    if (request.isJson)
        writeJson(saved.printers());
    else if (!request.isQuiet)
        writeTable(saved.printers());
    return outcome;
}

} // namespace zyslicer
