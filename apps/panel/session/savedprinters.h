// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that the user has given a name, kept in the settings.

#ifndef PANEL_SAVEDPRINTERS_H
#define PANEL_SAVEDPRINTERS_H

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace zypanel
{

/// Names and URLs only: an access token is a secret and is not written to disk.
class SavedPrinters
{
public:
    SavedPrinters();

    /// Letters, digits, '-' and '_': what cannot be taken for an address.
    static bool isName(const QString &text);

    QStringList names() const;
    /// Empty for a name that is not saved.
    QUrl url(const QString &name) const;
    void save(const QString &name, const QUrl &url);
    void remove(const QString &name);

    /// The URL of a saved name, or of an address; empty for neither. What could be a name is no
    /// address: a host alone is written with "ws://" or a port.
    QUrl resolve(const QString &nameOrAddress) const;

    /// The address last connected to, offered at the next start.
    QString lastUsed() const;
    void setLastUsed(const QString &nameOrAddress);

private:
    QSettings m_names;
};

} // namespace zypanel

#endif // PANEL_SAVEDPRINTERS_H
