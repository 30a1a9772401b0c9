// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a directory given on the command line can be used.

#ifndef DIRECTORY_H
#define DIRECTORY_H

#include <QString>

namespace zyprinter
{

/// Empty, or what keeps files from being written into @p path: "does not exist" and the like.
QString directoryFault(const QString &path);

} // namespace zyprinter

#endif // DIRECTORY_H
