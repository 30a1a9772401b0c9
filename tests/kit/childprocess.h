// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A program that runs beside the test: its output awaited, its end waited for or brought about.

#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include "waiting.h"

namespace zytest
{

/// What a program that ends by itself left behind.
struct RunResult {
    int exitCode = -1; ///< -1 when it crashed or did not end
    QByteArray output;
    QByteArray errors;
};

/**
 * Both of its streams go to files, so that it never waits for a test that does not read them.
 *
 * The functions that wait run the test's event loop meanwhile, which serves printers and proxies.
 */
class ChildProcess
{
public:
    ChildProcess() = default;
    ChildProcess(const QString &program, const QStringList &arguments);
    /// Kills it. Shows what it printed when the test has failed.
    virtual ~ChildProcess();

    void setEnvironment(const QProcessEnvironment &environment);
    /// Also once more, after its end.
    void start(const QString &program, const QStringList &arguments);

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }
    /// -1 when it crashed or never ran.
    int exitCode() const;

    /// All of its standard output so far.
    const QByteArray &output() const { return m_output.contents(); }
    /// All of its standard error so far.
    const QByteArray &errors() const { return m_errors.contents(); }
    /// Waits for @p text on its standard output; false when it ends before.
    bool waitForOutput(const QByteArray &text, int timeout = patience);

    /// Waits for its end by itself.
    bool waitForEnd(int timeout = 4 * patience);
    /// Sends @p signalNumber and nothing more.
    void signal(int signalNumber) const;
    /// Ends it with @p signalNumber; its exit code, -1 when it crashed or had to be killed.
    int stop(int signalNumber);
    /// SIGKILL, and waits for the end.
    void kill();

protected:
    QProcess &process() { return m_process; }

private:
    Q_DISABLE_COPY(ChildProcess)

    /// A file that another process appends to.
    class GrowingFile
    {
    public:
        void open(const QString &path);
        const QByteArray &contents() const;

    private:
        mutable QFile m_file;
        mutable QByteArray m_contents;
    };

    QTemporaryDir m_streams;
    GrowingFile m_output;
    GrowingFile m_errors;
    QProcess m_process;
};

/// Runs a program to its end, while the test's event loop goes on.
RunResult runProgram(const QString &program, const QStringList &arguments);

} // namespace zytest

#endif // CHILDPROCESS_H
