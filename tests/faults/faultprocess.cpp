// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One of the fault tests' programs as seen by a test: started, listened to, killed.

#include "faultprocess.h"

#include <QJsonDocument>

namespace zytest
{

FaultProcess::FaultProcess(const QString &program, const QStringList &arguments,
                           const QStringList &wrapper)
{
    QStringList command = wrapper;
    command.append(program);
    command.append(arguments);
    const QString first = command.takeFirst();
    start(first, command);
}

FaultProcess::~FaultProcess()
{
    quit();
}

bool FaultProcess::quit()
{
    process().closeWriteChannel();
    if (waitForEnd())
        return true;
    kill();
    return false;
}

const QVector<QJsonObject> &FaultProcess::events() const
{
    // The last line may not be whole yet.
    const int whole = static_cast<int>(output().lastIndexOf('\n')) + 1;
    for (const QByteArray &line : output().mid(m_parsedBytes, whole - m_parsedBytes).split('\n')) {
        if (!line.isEmpty())
            m_events.append(QJsonDocument::fromJson(line).object());
    }
    m_parsedBytes = whole;
    return m_events;
}

QVector<QJsonObject> FaultProcess::events(const char *name) const
{
    QVector<QJsonObject> matching;
    for (const QJsonObject &event : events()) {
        if (event.value(QLatin1String("event")) == QLatin1String(name))
            matching.append(event);
    }
    return matching;
}

bool FaultProcess::waitForEvents(const char *name, int count, int timeout)
{
    const auto areThere = [&] { return events(name).size() >= count; };
    const bool isDecided = waitUntil([&] { return areThere() || !isRunning(); }, timeout);
    return isDecided && areThere();
}

HostProcess::HostProcess(const QString &directory, const QStringList &options,
                         const QStringList &wrapper)
    : FaultProcess(QStringLiteral(ZY_FAULTHOST), QStringList{directory} + options, wrapper)
{
    if (waitForEvents("listening"))
        m_port = static_cast<quint16>(
            events("listening").constFirst().value(QLatin1String("port")).toInt());
}

QString HostProcess::url() const
{
    return QStringLiteral("ws://127.0.0.1:%1").arg(m_port);
}

SenderProcess::SenderProcess(const QString &url, const QString &file, const QStringList &options,
                             const QStringList &wrapper)
    : FaultProcess(QStringLiteral(ZY_FAULTSENDER), QStringList{url, file} + options, wrapper)
{
}

ListenerProcess::ListenerProcess(const QString &url, const QString &file)
    : FaultProcess(QStringLiteral(ZY_FAULTLISTENER), {url, file})
{
}

QString SenderProcess::waitForEnding(int timeout)
{
    if (!waitForEnd(timeout))
        return QStringLiteral("still running");
    if (exitCode() != 0)
        return QStringLiteral("exit code %1").arg(exitCode());
    if (!events("warning").isEmpty())
        return events("warning").constFirst().value(QLatin1String("text")).toString();
    return result().value(QLatin1String("ending")).toString();
}

QJsonObject SenderProcess::result() const
{
    return events("finished").value(0);
}

qint64 SenderProcess::resumedFrom() const
{
    return static_cast<qint64>(events("resumed").value(0).value(QLatin1String("from")).toDouble());
}

bool SenderProcess::cancel()
{
    write("cancel\n");
    return waitForEvents("cancelling");
}

} // namespace zytest
