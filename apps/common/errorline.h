// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The one line on standard error with which a program says what went wrong.

#ifndef ERRORLINE_H
#define ERRORLINE_H

#include <QString>

namespace zyapp
{

/// Texts from elsewhere (file names, a peer's words) on one line: control characters become '?'.
QString onOneLine(const QString &text);

/// "<program>: <what>: <which value>; <what to do>"; a part that is empty is left out.
QString errorLine(const QString &program, const QString &what, const QString &value,
                  const QString &remedy);

/// Writes errorLine() to standard error, in UTF-8 whatever the locale.
void printError(const QString &program, const QString &what, const QString &value,
                const QString &remedy);

} // namespace zyapp

#endif // ERRORLINE_H
