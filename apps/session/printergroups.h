// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Names for several saved printers at once.

#ifndef PRINTERGROUPS_H
#define PRINTERGROUPS_H

#include "settingsfile.h"

#include <QMap>
#include <QStringList>

namespace zysession
{

/**
 * The section "[groups]" of the saved printers' file: lines "group=name, name". A group has at
 * least one member; programs of version 1.0 leave the section alone.
 */
class PrinterGroups
{
public:
    /// @p file as SavedPrinters::file(); it is not touched yet.
    explicit PrinterGroups(const QString &file) : m_file(file) { }

    /// Reads the file anew. Until the first call, and after a fault, no group is known.
    SettingsFault read();
    /// As last read: the members of each group, by its name.
    const QMap<QString, QStringList> &all() const { return m_groups; }

    /// Adds a group or replaces the one of its name, then reads the file anew. Both the name and
    /// the members must be such that isPrinterName() holds.
    SettingsFault save(const QString &name, const QStringList &members);
    /// Removes the group @p name, and the printer @p name from all groups.
    SettingsFault remove(const QString &name);

private:
    SettingsFault write(const QMap<QString, QStringList> &groups);

    QString m_file;
    QMap<QString, QStringList> m_groups;
};

} // namespace zysession

#endif // PRINTERGROUPS_H
