// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a new file may take the place of what has its name.

#ifndef REPLACEMENT_H
#define REPLACEMENT_H

#include <QString>

namespace zyapp
{

/**
 * Why no new file may be put at @p path; empty when nothing or a regular file is there.
 *
 * To be asked before a QSaveFile or a rename: these put the new file in the place of whatever has
 * the name, and a FIFO or a device is lost by that.
 */
QString replacementFault(const QString &path);

} // namespace zyapp

#endif // REPLACEMENT_H
