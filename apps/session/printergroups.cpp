// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Names for several saved printers at once.

#include "printergroups.h"

#include <QSettings>

namespace zysession
{

namespace
{

const QLatin1String section("groups");

} // namespace

SettingsFault PrinterGroups::read()
{
    m_groups.clear();
    const SettingsFault fault = checkSettingsFile(m_file);
    if (fault != SettingsFault::None)
        return fault;
    QSettings settings(m_file, QSettings::IniFormat);
    settings.beginGroup(section);
    const QStringList names = settings.allKeys();
    for (const QString &name : names)
        m_groups.insert(name, settings.value(name).toStringList());
    return SettingsFault::None;
}

SettingsFault PrinterGroups::save(const QString &name, const QStringList &members)
{
    const SettingsFault fault = read();
    if (fault != SettingsFault::None)
        return fault;
    QMap<QString, QStringList> groups = m_groups;
    groups.insert(name, members);
    return write(groups);
}

SettingsFault PrinterGroups::remove(const QString &name)
{
    const SettingsFault fault = read();
    if (fault != SettingsFault::None)
        return fault;
    QMap<QString, QStringList> groups = m_groups;
    groups.remove(name);
    for (const QString &group : m_groups.keys()) {
        groups[group].removeAll(name);
        if (groups[group].isEmpty())
            groups.remove(group);
    }
    return groups == m_groups ? SettingsFault::None : write(groups);
}

SettingsFault PrinterGroups::write(const QMap<QString, QStringList> &groups)
{
    QSettings settings(m_file, QSettings::IniFormat);
    settings.remove(section);
    for (auto group = groups.cbegin(); group != groups.cend(); ++group)
        settings.setValue(section + QLatin1Char('/') + group.key(), group.value());
    settings.sync();
    return settings.status() == QSettings::NoError ? read() : SettingsFault::NotWritable;
}

} // namespace zysession
