// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The saved printers: names for URLs, kept in the settings.

#include "printerbook.h"

#include "printeraddress.h"

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

bool contains(const QVector<Printer> &printers, const Printer &wanted)
{
    for (const Printer &printer : printers) {
        if (printer.url == wanted.url)
            return true;
    }
    return false;
}

} // namespace

PrinterBook::PrinterBook(const QString &file) : m_settings(settingsPath(file), QSettings::IniFormat)
{
}

QVector<Printer> PrinterBook::printers() const
{
    QVector<Printer> printers;
    const QStringList keys = m_settings.allKeys();
    for (const QString &key : keys) {
        if (key.startsWith(group()))
            printers.append({key.mid(group().size()), m_settings.value(key).toUrl()});
    }
    return printers;
}

Outcome PrinterBook::add(const QString &name, const QString &url)
{
    if (!isPrinterName(name))
        return {ExitCode::Usage, QStringLiteral("not a printer name"), name,
                QStringLiteral("use letters, digits, '-' and '_', at most 64")};
    QUrl address;
    Outcome outcome = parsePrinterAddress(url, address);
    if (!outcome.isOk())
        return outcome;
    m_settings.setValue(group() + name, address);
    return sync();
}

Outcome PrinterBook::remove(const QString &name)
{
    if (!isPrinterName(name) || !m_settings.contains(group() + name))
        return {ExitCode::Usage, QStringLiteral("no such printer"), name,
                QStringLiteral("see the saved ones with 'zyslicer printers'")};
    m_settings.remove(group() + name);
    return sync();
}

Outcome PrinterBook::resolve(const QString &nameOrUrl, Printer &printer) const
{
    if (isPrinterName(nameOrUrl)) {
        const QUrl url = m_settings.value(group() + nameOrUrl).toUrl();
        if (!url.isValid() || url.isEmpty())
            return {ExitCode::Usage, QStringLiteral("unknown printer"), nameOrUrl,
                    QStringLiteral("give a URL such as ws://192.168.1.20:8080, or save the name "
                                   "with 'zyslicer printers add'")};
        printer = {nameOrUrl, url};
        return {};
    }
    QUrl url;
    Outcome outcome = parsePrinterAddress(nameOrUrl, url);
    if (outcome.isOk())
        printer = {url.toString(), url};
    return outcome;
}

Outcome PrinterBook::resolveAll(const QStringList &namesOrUrls, QVector<Printer> &printers) const
{
    if (namesOrUrls.isEmpty()) {
        printers = this->printers();
        if (printers.size() == 1)
            return {};
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

Outcome PrinterBook::sync()
{
    m_settings.sync();
    if (m_settings.status() == QSettings::NoError)
        return {};
    return {ExitCode::LocalFile, QStringLiteral("settings not writable"), m_settings.fileName(),
            QStringLiteral("check its permissions, or name another file with --settings")};
}
