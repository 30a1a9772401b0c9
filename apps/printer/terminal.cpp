// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The terminal on standard output: whether there is one, how big it is, a screen of its own.

#include "terminal.h"

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace terminal
{

namespace
{

// ECMA-48 and the "alternate screen" that every terminal of today has.
constexpr char enterScreen[] = "\x1b[?1049h\x1b[?25l";
constexpr char leaveScreen[] = "\x1b[?25h\x1b[?1049l";
constexpr char home[] = "\x1b[H";
constexpr char clearLine[] = "\x1b[K";

void write(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace

bool isThere()
{
    return isatty(STDOUT_FILENO) != 0 && qgetenv("TERM") != "dumb";
}

QSize size()
{
    winsize window{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0 && window.ws_row > 0)
        return {window.ws_col, window.ws_row};
    return {80, 24};
}

Screen::Screen()
{
    write(enterScreen);
}

Screen::~Screen()
{
    write(leaveScreen);
}

void Screen::draw(const QStringList &lines)
{
    QByteArray bytes = home;
    for (int i = 0; i < lines.size(); ++i) {
        // No line end after the last one: it would scroll. Cleared before the text, since after a
        // full line the cursor still stands on its last character.
        bytes += (i > 0 ? "\r\n" : "") + QByteArray(clearLine) + lines.at(i).toLocal8Bit();
    }
    write(bytes);
}

} // namespace terminal
