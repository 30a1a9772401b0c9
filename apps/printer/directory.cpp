// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a directory given on the command line can be used.

#include "directory.h"

#include <QFileInfo>
#include <QTemporaryFile>

namespace zyprinter
{

QString directoryFault(const QString &path)
{
    const QFileInfo directory(path);
    if (!directory.exists())
        return QStringLiteral("does not exist");
    if (!directory.isDir())
        return QStringLiteral("is no directory");
    // Tried, since permission bits do not tell the whole truth.
    QTemporaryFile probe(path + QStringLiteral("/.probe-XXXXXX"));
    return probe.open() ? QString() : QStringLiteral("is not writable");
}

} // namespace zyprinter
