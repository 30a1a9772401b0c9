// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that the user has given a name, kept in the settings.

#include "savedprinters.h"

#include "address.h"

#include <QRegularExpression>

namespace zypanel
{

namespace
{

constexpr int longestName = 64;
const QLatin1String group{"printers"};
const QLatin1String lastUsedKey{"printerPanel/lastPrinter"};

} // namespace

/// The file of the command-line client: a printer named there is known here, and the reverse.
SavedPrinters::SavedPrinters()
    : m_names(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zyWebsocket"),
              QStringLiteral("zyslicer"))
{
    m_names.beginGroup(group);
}

bool SavedPrinters::isName(const QString &text)
{
    static const QRegularExpression allowed(
        QStringLiteral("\\A[\\p{L}\\p{N}_-]{1,%1}\\z").arg(longestName));
    return allowed.match(text).hasMatch();
}

QStringList SavedPrinters::names() const
{
    QStringList all = m_names.childKeys();
    all.sort(Qt::CaseInsensitive);
    return all;
}

QUrl SavedPrinters::url(const QString &name) const
{
    return isName(name) ? m_names.value(name).toUrl() : QUrl();
}

void SavedPrinters::save(const QString &name, const QUrl &url)
{
    m_names.setValue(name, url.toString());
}

void SavedPrinters::remove(const QString &name)
{
    m_names.remove(name);
}

QUrl SavedPrinters::resolve(const QString &nameOrAddress) const
{
    const QString text = nameOrAddress.trimmed();
    return isName(text) ? url(text) : printerUrl(text);
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
