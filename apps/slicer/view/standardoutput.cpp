// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Standard output: plain writing and its failure, and what kind of terminal it is.

#include "standardoutput.h"

#include <QtGlobal>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zyslicer
{

namespace
{

constexpr int usualWidth = 80;
constexpr int usualHeight = 24;

int failure = 0; // errno of the first write that failed

void flush()
{
    if (failure != 0 || (std::fflush(stdout) == 0 && std::ferror(stdout) == 0))
        return;
    failure = errno;
    if (failure != EPIPE)
        return;
    // As for every program whose reader has gone; Qt's sockets have made the process ignore it.
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
}

} // namespace

void reserveStreams()
{
    int descriptor = -1;
    do
        descriptor = open("/dev/null", O_RDONLY); // writing stays an error
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    close(descriptor);
}

bool isTerminal()
{
    return isatty(STDOUT_FILENO) == 1 && qgetenv("TERM") != "dumb";
}

QSize terminalSize()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {usualWidth, usualHeight};
    return {size.ws_col, size.ws_row};
}

void writeOut(const QString &text)
{
    if (failure != 0)
        return;
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    flush();
}

Outcome writingOutcome()
{
    flush();
    if (failure == 0)
        return {};
    return {ExitCode::LocalFile, QStringLiteral("standard output not writable"),
            QString::fromLocal8Bit(std::strerror(failure)),
            QStringLiteral("direct it to a place that can be written")};
}

} // namespace zyslicer
