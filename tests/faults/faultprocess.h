// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One of the fault tests' programs as seen by a test: started, listened to, killed.

#ifndef FAULTPROCESS_H
#define FAULTPROCESS_H

#include "childprocess.h"

#include <QJsonObject>
#include <QVector>

namespace zytest
{

class FaultProcess : public ChildProcess
{
public:
    /// Starts @p program; @p wrapper is a command before it, to run it under (unshare, valgrind).
    FaultProcess(const QString &program, const QStringList &arguments,
                 const QStringList &wrapper = {});
    ~FaultProcess() override;

    /// Asks the program to quit, by ending its standard input; false when it had to be killed.
    bool quit();

    /// All events so far.
    const QVector<QJsonObject> &events() const;
    /// The events called @p name so far.
    QVector<QJsonObject> events(const char *name) const;
    /// Waits until there are @p count of them.
    bool waitForEvents(const char *name, int count = 1, int timeout = patience);

protected:
    /// To its standard input.
    void write(const QByteArray &bytes) { process().write(bytes); }

private:
    mutable QVector<QJsonObject> m_events;
    mutable int m_parsedBytes = 0;
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
