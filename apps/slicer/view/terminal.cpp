// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Standard output: plain writing, and what kind of terminal it is.

#include "terminal.h"

#include <QtGlobal>

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

constexpr int usualWidth = 80;
constexpr int usualHeight = 24;

} // namespace

namespace terminal
{

bool isUsable()
{
    return isatty(STDOUT_FILENO) == 1 && qgetenv("TERM") != "dumb";
}

QSize size()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {usualWidth, usualHeight};
    return {size.ws_col, size.ws_row};
}

void write(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace terminal
