// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The terminal on standard output: whether there is one, how big it is, a screen of its own.

#ifndef TERMINAL_H
#define TERMINAL_H

#include <QSize>
#include <QStringList>

namespace terminal
{

/// Standard output is a terminal that can be drawn on.
bool isThere();
/// In characters.
QSize size();

/// A screen of its own, for as long as this lives; what was on the terminal comes back afterwards.
class Screen
{
public:
    Screen();
    ~Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    /// Replaces what is shown. There are as many lines as the terminal has, and they fit its width.
    void draw(const QStringList &lines);
};

} // namespace terminal

#endif // TERMINAL_H
