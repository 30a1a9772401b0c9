// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the server's options ask of the disk: reserved space, and data that outlive a power loss.

#ifndef STORAGE_H
#define STORAGE_H

#include "zyserveroptions.h"

class QFile;

namespace zyws
{

/// Empty when @p bytes more can be received into @p temporaryFile, whose present space counts;
/// otherwise what is missing.
QString spaceFault(const ZyServerOptions &options, const QString &temporaryFile, qint64 bytes);

/// Makes @p file, which is open for writing, really hold @p bytes. Empty, or why that failed.
QString reserveSpace(const ZyServerOptions &options, const QFile &file, qint64 bytes);

/// Returns when everything written to @p file, which is open, is on the disk; false if it is not.
bool syncFile(const ZyServerOptions &options, const QFile &file);

/// The same for the names in @p directory.
void syncDirectory(const ZyServerOptions &options, const QString &directory);

} // namespace zyws

#endif // STORAGE_H
