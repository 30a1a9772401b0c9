// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One of the fault tests' programs as seen by a test: started, listened to, killed.

#ifndef FAULTPROCESS_H
#define FAULTPROCESS_H

#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QVector>

#include "waiting.h"

namespace zytest
{

class FaultProcess
{
public:
    /// Starts @p program; @p wrapper is a command before it, to run it under (unshare, valgrind).
    FaultProcess(const QString &program, const QStringList &arguments,
                 const QStringList &wrapper = {});
    /// Asks the program to quit, by ending its standard input, and kills it when it does not. Shows
    /// what it printed when the test has failed.
    ~FaultProcess();

    /// SIGKILL.
    void kill();
    /// Ends its standard input and waits; false when it had to be killed.
    bool quit();
    /// Waits for its end by itself.
    bool waitForEnd(int timeout = 4 * patience);
    int exitCode() const;
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 pid() const { return m_process.processId(); }

    /// All events so far.
    const QVector<QJsonObject> &events() const { return m_events; }
    /// The events called @p name so far.
    QVector<QJsonObject> events(const char *name) const;
    /// Waits until there are @p count of them.
    bool waitForEvents(const char *name, int count = 1, int timeout = patience);

protected:
    /// To its standard input.
    void write(const QByteArray &bytes) { m_process.write(bytes); }

private:
    void readEvents();

    QProcess m_process;
    QByteArray m_transcript;
    QVector<QJsonObject> m_events;
};

/// The printer's process.
class HostProcess : public FaultProcess
{
public:
    explicit HostProcess(const QString &directory, const QStringList &options = {},
                         const QStringList &wrapper = {});

    /// 0 when it did not start.
    quint16 port() const { return m_port; }
    QString url() const;

private:
    quint16 m_port = 0;
};

/// The sender's process.
class SenderProcess : public FaultProcess
{
public:
    SenderProcess(const QString &url, const QString &file, const QStringList &options = {},
                  const QStringList &wrapper = {});

    /// Waits for its end by itself; the name of the ending, or what else became of the process.
    QString waitForEnding(int timeout = 4 * patience);
    /// What it has finished with; empty before.
    QJsonObject result() const;
    /// Where the printer first resumed; 0 when it did not.
    qint64 resumedFrom() const;
    /// Has it cancel, and waits until it has begun to.
    bool cancel();
};

/// The process of a slicer that only listens.
class ListenerProcess : public FaultProcess
{
public:
    ListenerProcess(const QString &url, const QString &file);
};

} // namespace zytest

#endif // FAULTPROCESS_H
