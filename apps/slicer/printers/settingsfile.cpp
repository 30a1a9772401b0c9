// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a file may be used for the settings: what is checked before QSettings touches it.

#include "settingsfile.h"

#include <QFile>
#include <QFileInfo>

namespace
{

constexpr qint64 longestLine = 65536; // bytes; no line of settings comes near

Outcome refusal(const QString &what, const QString &path)
{
    return {ExitCode::LocalFile, what, path,
            QStringLiteral("it is left as it is; name another file with --settings")};
}

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

Outcome checkSettingsFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {};
    if (!info.isFile())
        return refusal(QStringLiteral("settings are no regular file"), path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refusal(QStringLiteral("settings not readable"), path);
    if (!holdsSettings(file))
        return refusal(QStringLiteral("not a settings file"), path);
    return {};
}
