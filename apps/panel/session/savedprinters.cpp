// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that the user has given a name, kept in the settings.

#include "savedprinters.h"

#include "address.h"

#include <QSettings>

namespace zypanel
{

namespace
{

const QLatin1String group{"printers"};
const QLatin1String lastUsedKey{"lastPrinter"};

} // namespace

QStringList SavedPrinters::names() const
{
    QSettings settings;
    settings.beginGroup(group);
    QStringList all = settings.childKeys();
    all.sort(Qt::CaseInsensitive);
    return all;
}

QUrl SavedPrinters::url(const QString &name) const
{
    QSettings settings;
    settings.beginGroup(group);
    return name.isEmpty() ? QUrl() : settings.value(name).toUrl();
}

void SavedPrinters::save(const QString &name, const QUrl &url)
{
    QSettings settings;
    settings.beginGroup(group);
    settings.setValue(name, url.toString());
}

void SavedPrinters::remove(const QString &name)
{
    QSettings settings;
    settings.beginGroup(group);
    settings.remove(name);
}

QUrl SavedPrinters::resolve(const QString &nameOrAddress) const
{
    const QString text = nameOrAddress.trimmed();
    const QUrl saved = url(text);
    return saved.isEmpty() ? printerUrl(text) : saved;
}

QString SavedPrinters::lastUsed() const
{
    return QSettings().value(lastUsedKey).toString();
}

void SavedPrinters::setLastUsed(const QString &nameOrAddress)
{
    QSettings().setValue(lastUsedKey, nameOrAddress);
}

} // namespace zypanel
