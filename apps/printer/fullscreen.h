// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The terminal on standard output: whether there is one, how big it is, a screen of its own.

#ifndef FULLSCREEN_H
#define FULLSCREEN_H

#include <QByteArray>
#include <QSize>
#include <QStringList>

namespace zyprinter
{

/// Standard output is a terminal that can be drawn on.
bool isTerminal();
/// The terminal's, in characters.
QSize terminalSize();

/**
 * A screen of its own, for as long as this lives; what was on the terminal comes back afterwards.
 *
 * Never blocks: a terminal that stands still (Ctrl-S) misses screens and holds up nobody.
 */
class Screen
{
public:
    Screen();
    ~Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    /// Replaces what is shown. There are as many lines as the terminal has, and they fit its width.
    void draw(const QStringList &lines);

private:
    bool flush();

    int m_descriptor; ///< of its own, so that it alone does not block
    QByteArray m_pending; ///< what the terminal has not taken yet
};

} // namespace zyprinter

#endif // FULLSCREEN_H
