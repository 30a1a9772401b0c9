// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Standard output: plain writing, and what kind of terminal it is.

#ifndef TERMINAL_H
#define TERMINAL_H

#include <QSize>
#include <QString>

namespace terminal
{

/// Standard output is a terminal on which lines can be drawn over.
bool isUsable();
/// In characters.
QSize size();
void write(const QString &text);

} // namespace terminal

#endif // TERMINAL_H
