// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What can be wrong with a file before anything is sent.

#include "localfile.h"

#include <QFile>
#include <QFileInfo>

namespace zypanel
{

FileFault checkLocalFile(const QString &path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        return FileFault::Missing;
    if (!info.isFile())
        return FileFault::NotAFile;
    // Opened, not asked for its permissions: those say little on network drives.
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return FileFault::Unreadable;
    return file.size() == 0 ? FileFault::Empty : FileFault::None;
}

FileFault checkPrinterName(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return FileFault::NameMissing;
    if (trimmed.contains(QLatin1Char('/')) || trimmed.contains(QLatin1Char('\\'))
        || trimmed == QLatin1String(".") || trimmed == QLatin1String(".."))
        return FileFault::NameHasPath;
    // Deliberate spelling: the protocol's name for the file being received.
    if (trimmed == QLatin1String("wifi_tranfer.tmp"))
        return FileFault::NameReserved;
    return FileFault::None;
}

} // namespace zypanel
