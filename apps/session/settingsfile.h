// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a file may be used for the settings: what is checked before QSettings touches it.

#ifndef SETTINGSFILE_H
#define SETTINGSFILE_H

#include <QString>

namespace zysession
{

enum class SettingsFault {
    None,
    NotAFile, ///< a directory, a pipe, a device
    NotReadable,
    NotSettings, ///< it holds something else
    NotWritable,
};

/**
 * None for a file that does not exist yet or that holds settings: sections of lines "key=value",
 * and comments that begin with ';'.
 *
 * QSettings drops the lines it does not understand when it writes, and puts a new regular file in
 * the place of whatever had the name; so a file that was named by mistake must be kept from it.
 */
SettingsFault checkSettingsFile(const QString &path);

} // namespace zysession

#endif // SETTINGSFILE_H
