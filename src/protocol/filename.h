// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The names of files on the printer: its own, and which ones a file may be sent under.

#ifndef FILENAME_H
#define FILENAME_H

#include <QLatin1String>
#include <QString>

namespace zyws
{

/// What a printer receives into. Deliberate spelling: printers look for it when they resume.
inline constexpr QLatin1String temporaryFileName("wifi_tranfer.tmp", 16);

enum class NameFault {
    None,
    Empty,
    Separator, ///< '/' or '\'
    Directory, ///< "." or ".."
    ControlCharacter,
    Reserved, ///< temporaryFileName in any letter case: the model would be lost on completion
    TooLong, ///< more than 255 bytes of UTF-8
};

/// None for a plain name, which leads neither out of the printer's directory nor into its own file.
NameFault nameFault(const QString &name);

} // namespace zyws

#endif // FILENAME_H
