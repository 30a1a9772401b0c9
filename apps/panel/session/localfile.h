// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What can be wrong with a file before anything is sent.

#ifndef PANEL_LOCALFILE_H
#define PANEL_LOCALFILE_H

#include <QString>

namespace zypanel
{

enum class FileFault {
    None,
    Missing,
    NotAFile,
    Unreadable,
    Empty, ///< would never complete on the printer
    NameMissing,
    NameHasPath, ///< would leave the printer's receive directory
    NameReserved, ///< the printer's own name for what it is receiving
};

FileFault checkLocalFile(const QString &path);
/// Checks the name under which the printer is to store the file.
FileFault checkPrinterName(const QString &name);

} // namespace zypanel

#endif // PANEL_LOCALFILE_H
