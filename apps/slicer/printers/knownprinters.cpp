// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers as the command line names them, and the command "printers".

#include "knownprinters.h"

#include "jsonview.h"
#include "printergroups.h"
#include "search.h"
#include "standardoutput.h"

#include <QJsonArray>

#include <algorithm>
#include <optional>

namespace zyslicer
{

namespace
{

using zysession::Printer;
using zysession::PrinterGroups;
using zysession::SavedPrinters;
using zysession::SettingsFault;

/// Without it, Qt would take the root directory for the user's.
bool hasPlaceForSettings(const QString &settings)
{
    const auto isSet = [](const char *name) { return !qEnvironmentVariableIsEmpty(name); };
    return !settings.isEmpty() || isSet("ZYSLICER_SETTINGS") || isSet("XDG_CONFIG_HOME")
        || isSet("HOME");
}

struct Saved {
    explicit Saved(const QString &settings)
        : printers(settings), groups(printers.file()), hasPlace(hasPlaceForSettings(settings))
    {
    }

    Outcome read();

    SavedPrinters printers;
    PrinterGroups groups;
    const bool hasPlace; ///< for the settings
};

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
    const QUrl url(text);
    if (!url.userInfo().isEmpty())
        return {
            ExitCode::Usage, QStringLiteral("printers know no users"),
            url.toString(QUrl::RemoveUserInfo),
            QStringLiteral("leave out what stands before the @; a token is given with --token")};
    return {ExitCode::Usage, QStringLiteral("not a printer address"), text,
            QStringLiteral("give a URL such as ws://192.168.1.20:8080")};
}

/// What is given for all printers, or is saved with this one.
QString orSaved(const QString &given, const QString &saved)
{
    return given.isNull() ? saved : given;
}

/// A certificate is either checked as the user wants it, or nothing is sent.
Outcome trustOutcome(const Printer &printer)
{
    ZyTlsTrust trust;
    const QString fault = printer.readTrust(trust);
    if (fault.isEmpty())
        return {};
    return {ExitCode::Usage, QStringLiteral("no certificate to check"), fault,
            QStringLiteral("give a wss:// address with --ca or --fingerprint, or neither of them")};
}

Outcome Saved::read()
{
    if (!hasPlace)
        return {ExitCode::LocalFile, QStringLiteral("no place for the settings"),
                QStringLiteral("HOME is not set"),
                QStringLiteral("set it, name a file with --settings, or printers by their URLs")};
    const SettingsFault fault = printers.read();
    return settingsOutcome(fault == SettingsFault::None ? groups.read() : fault, printers);
}

Outcome notAName(const QString &name)
{
    return {ExitCode::Usage, QStringLiteral("not a printer name"), name,
            QStringLiteral("use letters, digits, '-' and '_', at most 64")};
}

Outcome unknownPrinter(const QString &name)
{
    return {ExitCode::Usage, QStringLiteral("unknown printer"), name,
            QStringLiteral("give a URL such as ws://192.168.1.20:8080, or save the name "
                           "with 'zyslicer printers add'")};
}

/// Where the printers that a request names are looked up, each place only when it is needed.
struct Places {
    Saved saved;
    std::optional<Search> network;
    bool isWaiting = false; ///< for printers that are not there
};

Outcome resolveAnnounced(Places &places, const QString &name, QVector<Printer> &printers)
{
    if (!places.network)
        places.network.emplace();
    Printer printer;
    Outcome outcome = places.network->find(name, places.isWaiting, printer);
    if (outcome.isOk())
        printers.append(printer);
    return outcome;
}

Outcome resolve(Places &places, const QString &nameOrUrl, QVector<Printer> &printers)
{
    const QString announced = zydiscovery::nameInAddress(nameOrUrl);
    if (!announced.isEmpty())
        return resolveAnnounced(places, announced, printers);
    Saved &saved = places.saved;
    const bool isName = zysession::isPrinterName(nameOrUrl);
    if (isName) {
        Outcome outcome = saved.read();
        if (!outcome.isOk())
            return outcome;
    }
    const QStringList members = saved.groups.all().value(nameOrUrl, {nameOrUrl});
    if (members.isEmpty())
        return unknownPrinter(nameOrUrl);
    for (const QString &member : members) {
        const Printer printer = saved.printers.resolve(member);
        if (printer.url.isEmpty())
            return isName ? unknownPrinter(member) : notAnAddress(nameOrUrl);
        printers.append(printer);
    }
    return {};
}

Outcome findSavedPrinters(Saved &saved, bool isAll, QVector<Printer> &printers)
{
    Outcome outcome = saved.read();
    printers = saved.printers.printers();
    if (!outcome.isOk() || printers.size() == 1 || (isAll && !printers.isEmpty()))
        return outcome;
    if (isAll)
        return {ExitCode::Usage, QStringLiteral("no saved printers"), saved.printers.file(),
                QStringLiteral("save them with 'zyslicer printers add'")};
    return {ExitCode::Usage, QStringLiteral("no printer named"),
            QStringLiteral("%1 saved printers to choose from").arg(printers.size()),
            QStringLiteral("give --to with a URL or a saved name, or --all")};
}

Outcome addPrinter(const Request &request, Saved &saved)
{
    const QString name = request.savedName;
    if (!zysession::isPrinterName(name))
        return notAName(name);
    const QUrl url = zysession::printerUrl(request.savedUrl);
    if (url.isEmpty())
        return notAnAddress(request.savedUrl);
    Outcome outcome = saved.read();
    if (!outcome.isOk())
        return outcome;
    if (saved.groups.all().contains(name))
        return {ExitCode::Usage, QStringLiteral("name of a group"), name,
                QStringLiteral("give another name, or remove the group first")};
    // A printer that moves to another address keeps its token and its certificate.
    const Printer before = saved.printers.find(name);
    const Printer printer{name, url, orSaved(request.token, before.token),
                          orSaved(request.authorities, before.authorities),
                          orSaved(request.fingerprint, before.fingerprint)};
    const Outcome trusted = trustOutcome(printer);
    return trusted.isOk() ? settingsOutcome(saved.printers.save(printer), saved.printers) : trusted;
}

Outcome addGroup(const Request &request, Saved &saved)
{
    if (!zysession::isPrinterName(request.savedName))
        return notAName(request.savedName);
    Outcome outcome = saved.read();
    if (!outcome.isOk())
        return outcome;
    if (!saved.printers.find(request.savedName).name.isEmpty())
        return {ExitCode::Usage, QStringLiteral("name of a printer"), request.savedName,
                QStringLiteral("give the group another name")};
    for (const QString &member : request.members) {
        if (!zysession::isPrinterName(member) || saved.printers.find(member).name.isEmpty())
            return unknownPrinter(member);
    }
    return settingsOutcome(saved.groups.save(request.savedName, request.members), saved.printers);
}

Outcome removePrinter(const QString &name, Saved &saved)
{
    Outcome outcome = saved.read();
    if (!outcome.isOk())
        return outcome;
    const bool isPrinter
        = zysession::isPrinterName(name) && !saved.printers.find(name).name.isEmpty();
    if (!isPrinter && !saved.groups.all().contains(name))
        return {ExitCode::Usage, QStringLiteral("no such printer"), name,
                QStringLiteral("see the saved ones with 'zyslicer printers'")};
    const SettingsFault fault = saved.groups.remove(name);
    return settingsOutcome(fault == SettingsFault::None && isPrinter ? saved.printers.remove(name)
                                                                     : fault,
                           saved.printers);
}

void writeJson(const Saved &saved)
{
    for (const Printer &printer : saved.printers.printers())
        writeJsonLine(QStringLiteral("printer"),
                      {{QStringLiteral("name"), printer.name},
                       {QStringLiteral("url"), printer.url.toString()}});
    const auto &groups = saved.groups.all();
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        writeJsonLine(QStringLiteral("group"),
                      {{QStringLiteral("name"), group.key()},
                       {QStringLiteral("printers"), QJsonArray::fromStringList(group.value())}});
}

void writeTable(const Saved &saved)
{
    QVector<QPair<QString, QString>> rows;
    for (const Printer &printer : saved.printers.printers())
        rows.append({printer.name, printer.url.toString()});
    const auto &groups = saved.groups.all();
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        rows.append({group.key(), group.value().join(QLatin1Char(' '))});
    int width = 0;
    for (const auto &row : qAsConst(rows))
        width = std::max(width, int(row.first.size()));
    for (const auto &row : qAsConst(rows))
        writeOut(row.first.leftJustified(width + 2) + row.second + QLatin1Char('\n'));
}

/// The printers that the request names, as they are saved.
Outcome findNamedPrinters(const Request &request, QVector<Printer> &printers)
{
    Places places{Saved(request.settingsFile), {}, request.isWaiting};
    if (request.printers.isEmpty())
        return findSavedPrinters(places.saved, request.isAll, printers);
    for (const QString &nameOrUrl : request.printers) {
        QVector<Printer> named;
        Outcome outcome = resolve(places, nameOrUrl, named);
        if (!outcome.isOk())
            return outcome;
        for (const Printer &printer : qAsConst(named)) {
            const auto isSame = [&](const Printer &other) { return other.url == printer.url; };
            if (std::none_of(printers.cbegin(), printers.cend(), isSame))
                printers.append(printer);
            else if (named.size() == 1) // groups may overlap
                return {ExitCode::Usage, QStringLiteral("printer named twice"), nameOrUrl,
                        QStringLiteral("name each printer once")};
        }
    }
    return {};
}

} // namespace

Outcome findPrinters(const Request &request, QVector<Printer> &printers)
{
    Outcome outcome = findNamedPrinters(request, printers);
    const bool isTrustGiven = !request.authorities.isNull() || !request.fingerprint.isNull();
    for (int i = 0; i < printers.size() && outcome.isOk(); ++i) {
        if (isTrustGiven) {
            printers[i].authorities = request.authorities;
            printers[i].fingerprint = request.fingerprint;
        }
        outcome = trustOutcome(printers[i]);
    }
    return outcome;
}

Outcome runPrintersCommand(const Request &request)
{
    Saved saved(request.settingsFile);
    if (request.command == Request::Command::PrintersAdd)
        return addPrinter(request, saved);
    if (request.command == Request::Command::PrintersGroup)
        return addGroup(request, saved);
    if (request.command == Request::Command::PrintersRemove)
        return removePrinter(request.savedName, saved);
    Outcome outcome = saved.read();
    if (request.isJson)
        writeJson(saved);
    else if (!request.isQuiet)
        writeTable(saved);
    return outcome;
}

} // namespace zyslicer
