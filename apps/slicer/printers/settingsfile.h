// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a file may be used for the settings: what is checked before QSettings touches it.

#ifndef SETTINGSFILE_H
#define SETTINGSFILE_H

#include "outcome.h"

/**
 * Ok for a file that does not exist yet or that holds settings: sections of lines "key=value", and
 * comments that begin with ';'.
 *
 * QSettings drops the lines it does not understand when it writes, and puts a new regular file in
 * the place of whatever had the name; so a file that somebody named by mistake must be kept from
 * it.
 */
Outcome checkSettingsFile(const QString &path);

#endif // SETTINGSFILE_H
