// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a new file may take the place of what has its name.

#include "replacement.h"

#include <QFileInfo>

namespace zyapp
{

QString replacementFault(const QString &path)
{
    const QFileInfo there(path);
    if (!there.exists() || there.isFile())
        return {};
    return there.isDir() ? QStringLiteral("it is a directory")
                         : QStringLiteral("it is there and no regular file");
}

} // namespace zyapp
