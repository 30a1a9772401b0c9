// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyslicer, and what it needs: models, its own settings.

#include "slicerprocess.h"

#include "waiting.h"

#include <QFile>
#include <QJsonDocument>
#include <QTcpServer>

#include <csignal>

namespace
{

constexpr int longTime = 120000; // ms; a loaded machine with sanitizers is slow

bool hasEnded(const QProcess &process)
{
    return process.state() == QProcess::NotRunning;
}

/// For the test that holds all lines of --json against their schema.
void keepLines(const QByteArray &output)
{
    static QFile file(qEnvironmentVariable("ZYSLICER_LINES"));
    if (file.isOpen() || file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        file.write(output.left(output.lastIndexOf('\n') + 1)); // a killed one's last may be cut off
}

} // namespace

SlicerProcess::SlicerProcess(const QStringList &arguments, const QString &settings)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZYSLICER_SETTINGS"),
                       settings.isEmpty() ? m_directory.filePath(QStringLiteral("settings.ini"))
                                          : settings);
    environment.remove(QStringLiteral("ZYSLICER_TOKEN"));
    m_process.setProcessEnvironment(environment);
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                     [this] { m_output += m_process.readAllStandardOutput(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                     [this] { m_errors += m_process.readAllStandardError(); });
    m_process.start(QStringLiteral(ZYSLICER), arguments);
}

SlicerProcess::~SlicerProcess()
{
    m_process.disconnect();
    kill();
    if (m_process.arguments().contains(QStringLiteral("--json")))
        keepLines(m_output);
}

bool SlicerProcess::waitForExit()
{
    return zytest::waitUntil([this] { return hasEnded(m_process); }, longTime)
        && m_process.error() == QProcess::UnknownError;
}

bool SlicerProcess::waitForOutput(const QByteArray &text)
{
    zytest::waitUntil([&] { return m_output.contains(text) || hasEnded(m_process); }, longTime);
    return m_output.contains(text);
}

QJsonObject SlicerProcess::waitForEvent(const QString &event)
{
    const auto events = [&] {
        // The last line may not be whole yet.
        return eventsNamed(event, m_output.left(m_output.lastIndexOf('\n') + 1));
    };
    zytest::waitUntil([&] { return !events().isEmpty() || hasEnded(m_process); }, longTime);
    return events().isEmpty() ? QJsonObject() : events().last();
}

void SlicerProcess::interrupt()
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGINT);
}

void SlicerProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

SlicerResult runSlicer(const QStringList &arguments, const QString &settings)
{
    SlicerProcess slicer(arguments, settings);
    if (!slicer.waitForExit())
        return {};
    return {slicer.exitCode(), slicer.output(), slicer.errors()};
}

SlicerResult runInShell(const QString &script, const QStringList &arguments)
{
    const QTemporaryDir directory;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZYSLICER_SETTINGS"),
                       directory.filePath(QStringLiteral("settings.ini")));
    QProcess shell;
    shell.setProcessEnvironment(environment);
    shell.start(QStringLiteral("bash"),
                QStringList{QStringLiteral("-c"), script, QStringLiteral(ZYSLICER)} + arguments);
    if (!shell.waitForFinished(longTime))
        return {};
    return {shell.exitCode(), shell.readAllStandardOutput(), shell.readAllStandardError()};
}

QVector<QJsonObject> jsonLines(const QByteArray &output)
{
    QVector<QJsonObject> objects;
    for (const QByteArray &line : output.split('\n')) {
        if (line.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (!document.isObject())
            qFatal("not one JSON object: %s", line.constData());
        objects.append(document.object());
    }
    return objects;
}

QVector<QJsonObject> eventsNamed(const QString &event, const QByteArray &output)
{
    QVector<QJsonObject> events;
    for (const QJsonObject &object : jsonLines(output)) {
        if (object.value(QLatin1String("event")).toString() == event)
            events.append(object);
    }
    return events;
}

bool isOneErrorLine(const QByteArray &errors, const QByteArray &part)
{
    return errors.startsWith("zyslicer: ") && errors.endsWith('\n') && errors.count('\n') == 1
        && errors.contains("; ") && errors.contains(part);
}

QString makeModel(const QString &path, int layers)
{
    const QStringList arguments{QStringLiteral("--out"),        path,
                                QStringLiteral("--layers"),     QString::number(layers),
                                QStringLiteral("--resolution"), QStringLiteral("144x256")};
    if (QProcess::execute(QStringLiteral(ZYMODEL), arguments) != 0)
        qFatal("no model %s", qPrintable(path));
    return path;
}

QString deadUrl()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    const quint16 port = server.serverPort();
    server.close();
    return QStringLiteral("ws://127.0.0.1:%1").arg(port);
}
