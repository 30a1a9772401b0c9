// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The saved printers: names for URLs, kept in the settings.

#include "printerbook.h"

#include "printeraddress.h"
#include "settingsfile.h"

namespace
{

QString settingsPath(const QString &file)
{
    if (!file.isEmpty())
        return file;
    QString named = qEnvironmentVariable("ZYSLICER_SETTINGS");
    if (!named.isEmpty())
        return named;
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zyWebsocket"),
                     QStringLiteral("zyslicer"))
        .fileName();
}

QString group()
{
    return QStringLiteral("printers/");
}

/// Empty when there is none, or no address.
QUrl savedUrl(const QSettings &settings, const QString &key)
{
    QUrl url;
    // A QUrl, as earlier versions saved it, converts to its text.
    const Outcome outcome = parsePrinterAddress(settings.value(key).toString(), url);
    return outcome.isOk() ? url : QUrl();
}

bool contains(const QVector<Printer> &printers, const Printer &wanted)
{
    for (const Printer &printer : printers) {
        if (printer.url == wanted.url)
            return true;
    }
    return false;
}

} // namespace

PrinterBook::PrinterBook(const QString &file) : m_path(settingsPath(file)) { }

Outcome PrinterBook::list(QVector<Printer> &printers)
{
    Outcome outcome = open();
    if (!outcome.isOk())
        return outcome;
    const QStringList keys = m_settings->allKeys();
    for (const QString &key : keys) {
        if (key.startsWith(group()))
            printers.append({key.mid(group().size()), savedUrl(*m_settings, key)});
    }
    return {};
}

Outcome PrinterBook::add(const QString &name, const QString &url)
{
    if (!isPrinterName(name))
        return {ExitCode::Usage, QStringLiteral("not a printer name"), name,
                QStringLiteral("use letters, digits, '-' and '_', at most 64")};
    QUrl address;
    Outcome outcome = parsePrinterAddress(url, address);
    if (outcome.isOk())
        outcome = open();
    if (!outcome.isOk())
        return outcome;
    m_settings->setValue(group() + name, address.toString());
    return sync();
}

Outcome PrinterBook::remove(const QString &name)
{
    Outcome outcome = open();
    if (!outcome.isOk())
        return outcome;
    if (!isPrinterName(name) || !m_settings->contains(group() + name))
        return {ExitCode::Usage, QStringLiteral("no such printer"), name,
                QStringLiteral("see the saved ones with 'zyslicer printers'")};
    m_settings->remove(group() + name);
    return sync();
}

Outcome PrinterBook::resolve(const QString &nameOrUrl, Printer &printer)
{
    if (isPrinterName(nameOrUrl))
        return resolveName(nameOrUrl, printer);
    QUrl url;
    Outcome outcome = parsePrinterAddress(nameOrUrl, url);
    if (outcome.isOk())
        printer = {url.toString(), url};
    return outcome;
}

Outcome PrinterBook::resolveName(const QString &name, Printer &printer)
{
    Outcome outcome = open();
    if (!outcome.isOk())
        return outcome;
    const QUrl url = savedUrl(*m_settings, group() + name);
    if (url.isEmpty())
        return {ExitCode::Usage, QStringLiteral("unknown printer"), name,
                QStringLiteral("give a URL such as ws://192.168.1.20:8080, or save the name "
                               "with 'zyslicer printers add'")};
    printer = {name, url};
    return {};
}

Outcome PrinterBook::resolveAll(const QStringList &namesOrUrls, QVector<Printer> &printers)
{
    if (namesOrUrls.isEmpty()) {
        Outcome outcome = list(printers);
        if (!outcome.isOk() || printers.size() == 1)
            return outcome;
        return {ExitCode::Usage, QStringLiteral("no printer named"),
                QStringLiteral("%1 saved printers to choose from").arg(printers.size()),
                QStringLiteral("give --to with a URL or a saved name")};
    }
    for (const QString &nameOrUrl : namesOrUrls) {
        Printer printer;
        Outcome outcome = resolve(nameOrUrl, printer);
        if (!outcome.isOk())
            return outcome;
        if (contains(printers, printer))
            return {ExitCode::Usage, QStringLiteral("printer named twice"), nameOrUrl,
                    QStringLiteral("name each printer once")};
        printers.append(printer);
    }
    return {};
}

/// Only when a saved name is asked for: who gives URLs needs no settings.
Outcome PrinterBook::open()
{
    if (m_settings)
        return {};
    Outcome outcome = checkSettingsFile(m_path);
    if (outcome.isOk())
        m_settings = std::make_unique<QSettings>(m_path, QSettings::IniFormat);
    return outcome;
}

Outcome PrinterBook::sync()
{
    m_settings->sync();
    if (m_settings->status() == QSettings::NoError)
        return {};
    return {ExitCode::LocalFile, QStringLiteral("settings not writable"), m_path,
            QStringLiteral("check its permissions, or name another file with --settings")};
}
