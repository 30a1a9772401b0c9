// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A pseudo terminal with a program on it: what it writes is read, what a person types is written.

#include "terminal.h"

#include "waiting.h"

#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zytest
{

namespace
{

winsize windowOf(const QSize &size)
{
    winsize window{};
    window.ws_col = static_cast<unsigned short>(size.width());
    window.ws_row = static_cast<unsigned short>(size.height());
    return window;
}

} // namespace

Terminal::~Terminal()
{
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    if (m_terminal >= 0)
        ::close(m_terminal);
}

bool Terminal::start(const QString &program, const QStringList &arguments, const QSize &size,
                     const char *terminalType)
{
    std::vector<QByteArray> words{program.toLocal8Bit()};
    for (const QString &argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char *> argv;
    for (QByteArray &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    winsize window = windowOf(size);
    m_process = ::forkpty(&m_terminal, nullptr, nullptr, &window);
    if (m_process == 0) {
        ::setenv("TERM", terminalType, 1);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    return m_process > 0 && ::fcntl(m_terminal, F_SETFL, O_NONBLOCK) == 0;
}

void Terminal::resize(const QSize &size)
{
    const winsize window = windowOf(size);
    ::ioctl(m_terminal, TIOCSWINSZ, &window);
}

void Terminal::type(char key)
{
    if (::write(m_terminal, &key, 1) != 1)
        qFatal("cannot type");
}

void Terminal::hangUp()
{
    ::close(m_terminal);
    m_terminal = -1;
}

bool Terminal::hasEnded(int &status)
{
    output(); // a full terminal would keep it from ending
    return ::waitpid(m_process, &status, WNOHANG) == m_process;
}

int Terminal::waitForEnd()
{
    int status = 0;
    if (!waitUntil([&] { return hasEnded(status); }, 4 * patience))
        return -1;
    m_process = -1;
    output();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

const QByteArray &Terminal::output()
{
    char buffer[4096];
    ssize_t count = 0;
    while ((count = ::read(m_terminal, buffer, sizeof buffer)) > 0)
        m_output.append(buffer, static_cast<int>(count));
    return m_output;
}

} // namespace zytest
