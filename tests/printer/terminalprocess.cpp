// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A zyprinter on a terminal of its own: a pseudo terminal whose screen the test reads.

#include "terminalprocess.h"

#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr int patience = 30000; // ms

winsize windowOf(const QSize &size)
{
    winsize window{};
    window.ws_col = static_cast<unsigned short>(size.width());
    window.ws_row = static_cast<unsigned short>(size.height());
    return window;
}

} // namespace

TerminalProcess::~TerminalProcess()
{
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }
    if (m_terminal >= 0)
        ::close(m_terminal);
}

bool TerminalProcess::start(const QStringList &arguments, const QSize &size,
                            const char *terminalType)
{
    std::vector<QByteArray> words{ZYPRINTER, "--dir", m_dir.path().toLocal8Bit()};
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
    if (m_process < 0 || ::fcntl(m_terminal, F_SETFL, O_NONBLOCK) != 0)
        return false;
    const QRegularExpression listening(QStringLiteral("zyprinter: listening on (ws:\\S+)\r\n"));
    return QTest::qWaitFor(
        [&] {
            m_url = QUrl(listening.match(QString::fromLocal8Bit(output())).captured(1));
            return !m_url.isEmpty();
        },
        patience);
}

void TerminalProcess::resize(const QSize &size)
{
    const winsize window = windowOf(size);
    ::ioctl(m_terminal, TIOCSWINSZ, &window);
}

void TerminalProcess::type(char key)
{
    if (::write(m_terminal, &key, 1) != 1)
        qFatal("cannot type");
}

void TerminalProcess::hangUp()
{
    ::close(m_terminal);
    m_terminal = -1;
}

int TerminalProcess::waitForEnd()
{
    int status = 0;
    const bool hasEnded = QTest::qWaitFor(
        [&] {
            output(); // a full terminal would keep it from ending
            return ::waitpid(m_process, &status, WNOHANG) == m_process;
        },
        patience);
    if (!hasEnded)
        return -1;
    m_process = -1;
    output();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

const QByteArray &TerminalProcess::output()
{
    char buffer[4096];
    ssize_t count = 0;
    while ((count = ::read(m_terminal, buffer, sizeof buffer)) > 0)
        m_output.append(buffer, int(count));
    return m_output;
}

QStringList TerminalProcess::screen()
{
    // A screen is whole once the next one, or the end, has begun.
    const QByteArray home = "\x1b[H";
    const QByteArray end = "\x1b[?25h";
    const auto last = qMax(output().lastIndexOf(home), m_output.lastIndexOf(end));
    const auto first = last > 0 ? m_output.lastIndexOf(home, last - 1) : -1;
    if (first < 0)
        return {};
    const auto start = first + home.size();
    QString text = QString::fromLocal8Bit(m_output.mid(start, last - start));
    text.remove(QStringLiteral("\x1b[K")).remove(QLatin1Char('\r'));
    return text.split(QLatin1Char('\n'));
}

bool TerminalProcess::shows(const QString &text)
{
    return QTest::qWaitFor([&] { return screen().filter(text).size() > 0; }, patience);
}
