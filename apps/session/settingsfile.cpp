// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a file may be used for the settings: what is checked before QSettings touches it.

#include "settingsfile.h"

#include <QFile>
#include <QFileInfo>

namespace zysession
{

namespace
{

constexpr qint64 longestLine = 65536; // bytes; no line of settings comes near

bool isSection(const QByteArray &line)
{
    return line.startsWith('[') && line.endsWith(']');
}

bool isAssignment(const QByteArray &line)
{
    return line.indexOf('=') > 0 && !line.startsWith('#');
}

bool holdsSettings(QFile &file)
{
    bool isInSection = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(longestLine).trimmed();
        if (line.isEmpty() || line.startsWith(';'))
            continue;
        // Settings written by QSettings have no line before the first section.
        if (!isSection(line) && !(isInSection && isAssignment(line)))
            return false;
        isInSection = true;
    }
    return true;
}

} // namespace

SettingsFault checkSettingsFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return SettingsFault::None;
    if (!info.isFile())
        return SettingsFault::NotAFile;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return SettingsFault::NotReadable;
    return holdsSettings(file) ? SettingsFault::None : SettingsFault::NotSettings;
}

} // namespace zysession
