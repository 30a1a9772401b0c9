// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The terminal on standard output: whether there is one, how big it is, a screen of its own.

#include "fullscreen.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zyprinter
{

namespace
{

// ECMA-48 and the "alternate screen" that every terminal of today has.
constexpr char enterScreen[] = "\x1b[?1049h\x1b[?25l";
constexpr char leaveScreen[] = "\x1b[?25h\x1b[?1049l";
constexpr char home[] = "\x1b[H";
constexpr char clearLine[] = "\x1b[K";

/// Standard output's own descriptor is shared with the shell, which would not expect it to change.
int openWithoutBlocking()
{
    const char *name = ttyname(STDOUT_FILENO);
    const int descriptor = name ? open(name, O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC) : -1;
    // In a container the terminal may have no name.
    return descriptor >= 0 ? descriptor : dup(STDOUT_FILENO);
}

} // namespace

bool isTerminal()
{
    return isatty(STDOUT_FILENO) != 0 && qgetenv("TERM") != "dumb";
}

QSize terminalSize()
{
    winsize window{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0 && window.ws_row > 0)
        return {window.ws_col, window.ws_row};
    return {80, 24};
}

Screen::Screen() : m_descriptor(openWithoutBlocking()), m_pending(enterScreen)
{
    flush();
}

Screen::~Screen()
{
    constexpr int patience = 500; // ms
    m_pending += leaveScreen;
    pollfd whenReady{m_descriptor, POLLOUT, 0};
    // A terminal that is gone is "ready" too, with an error.
    while (!flush() && poll(&whenReady, 1, patience) > 0 && whenReady.revents == POLLOUT) { }
    close(m_descriptor);
}

/// True when the terminal has taken everything.
bool Screen::flush()
{
    while (!m_pending.isEmpty()) {
        const ssize_t taken = write(m_descriptor, m_pending.data(), size_t(m_pending.size()));
        if (taken <= 0)
            return false;
        m_pending.remove(0, int(taken));
    }
    return true;
}

void Screen::draw(const QStringList &lines)
{
    if (!flush())
        return;
    m_pending = home;
    for (int i = 0; i < lines.size(); ++i) {
        // No line end after the last one: it would scroll. Cleared before the text, since after a
        // full line the cursor still stands on its last character.
        m_pending += (i > 0 ? "\r\n" : "") + QByteArray(clearLine) + lines.at(i).toUtf8();
    }
    flush();
}

} // namespace zyprinter
