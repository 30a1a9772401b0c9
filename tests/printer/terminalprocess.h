// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A zyprinter on a terminal of its own: a pseudo terminal whose screen the test reads.

#ifndef TERMINALPROCESS_H
#define TERMINALPROCESS_H

#include <QSize>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

class TerminalProcess
{
public:
    TerminalProcess() = default;
    ~TerminalProcess();
    TerminalProcess(const TerminalProcess &) = delete;
    TerminalProcess &operator=(const TerminalProcess &) = delete;

    /// Starts it; false when it does not say where it listens.
    bool start(const QStringList &arguments, const QSize &size, const char *terminalType = "xterm");
    QUrl url() const { return m_url; }
    QString path(const QString &name) const { return m_dir.filePath(name); }

    void resize(const QSize &size);
    /// As if it were typed; '\x03' is Ctrl-C.
    void type(char key);
    /// Takes the terminal away.
    void hangUp();
    /// Waits for the end; the exit code, -1 when it crashed or stays.
    int waitForEnd();

    /// All that it has written so far.
    const QByteArray &output();
    /// The lines of the last whole screen.
    QStringList screen();
    /// Waits until a line of the screen holds @p text.
    bool shows(const QString &text);

private:
    QTemporaryDir m_dir;
    QUrl m_url;
    int m_terminal = -1;
    pid_t m_process = -1;
    QByteArray m_output;
};

#endif // TERMINALPROCESS_H
