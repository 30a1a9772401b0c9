// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One of the fault tests' programs as seen by a test: started, listened to, killed.

#include "faultprocess.h"

#include <QJsonDocument>
#include <QTest>

#include <cstdio>

namespace zytest
{

FaultProcess::FaultProcess(const QString &program, const QStringList &arguments,
                           const QStringList &wrapper)
{
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                     [this] { readEvents(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                     [this] { m_transcript += m_process.readAllStandardError(); });
    QStringList command = wrapper;
    command.append(program);
    command.append(arguments);
    m_process.start(command.takeFirst(), command);
    m_process.waitForStarted(patience);
}

FaultProcess::~FaultProcess()
{
    m_process.disconnect();
    quit();
    if (QTest::currentTestFailed())
        std::fprintf(stderr, "%s printed:\n%s", qPrintable(m_process.program()),
                     m_transcript.constData());
}

void FaultProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

bool FaultProcess::quit()
{
    m_process.closeWriteChannel();
    if (waitForEnd())
        return true;
    kill();
    return false;
}

bool FaultProcess::waitForEnd(int timeout)
{
    return waitUntil([this] { return m_process.state() == QProcess::NotRunning; }, timeout);
}

int FaultProcess::exitCode() const
{
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void FaultProcess::readEvents()
{
    while (m_process.canReadLine()) {
        const QByteArray line = m_process.readLine();
        m_transcript += line;
        m_events.append(QJsonDocument::fromJson(line).object());
    }
}

QVector<QJsonObject> FaultProcess::events(const char *name) const
{
    QVector<QJsonObject> matching;
    for (const QJsonObject &event : m_events) {
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
