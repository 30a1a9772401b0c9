// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A pseudo terminal with a program on it: what it writes is read, what a person types is written.

#ifndef TERMINAL_H
#define TERMINAL_H

#include <QSize>
#include <QStringList>

#include <sys/types.h>

namespace zytest
{

class Terminal
{
public:
    Terminal() = default;
    /// Kills the program.
    virtual ~Terminal();

    /// Starts @p program on a terminal of @p size columns and rows; false when there is none.
    bool start(const QString &program, const QStringList &arguments, const QSize &size,
               const char *terminalType = "xterm");

    void resize(const QSize &size);
    /// As if it were typed; '\x03' is Ctrl-C.
    void type(char key);
    /// Takes the terminal away.
    void hangUp();
    /// Waits for the end; the exit code, -1 when it crashed or stays.
    int waitForEnd();

    /// All that it has written so far, control sequences included.
    const QByteArray &output();

private:
    Q_DISABLE_COPY(Terminal)

    bool hasEnded(int &status);

    int m_terminal = -1;
    pid_t m_process = -1;
    QByteArray m_output;
};

} // namespace zytest

#endif // TERMINAL_H
