// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How many columns of a terminal a text takes: none, one or two for each character.

#ifndef DISPLAYWIDTH_H
#define DISPLAYWIDTH_H

#include <QString>

namespace zyapp
{

/// At least as many as a terminal uses: some draw several emoji as one.
int displayWidth(const QString &text);

/// @p text, or its beginning and an ellipsis where it takes more than @p width columns.
QString elided(const QString &text, int width);
/// As much of the beginning as fits into @p width columns.
QString clipped(const QString &text, int width);
/// @p text with spaces up to @p width columns.
QString padded(const QString &text, int width);

} // namespace zyapp

#endif // DISPLAYWIDTH_H
