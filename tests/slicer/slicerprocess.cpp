// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyslicer with settings of its own.

#include "slicerprocess.h"

#include <QFile>
#include <QJsonDocument>

#include <csignal>

namespace
{

constexpr int longTime = 4 * zytest::patience; // a loaded machine with sanitizers is slow

QProcessEnvironment environmentWith(const QString &settings)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZYSLICER_SETTINGS"), settings);
    environment.remove(QStringLiteral("ZYSLICER_TOKEN"));
    return environment;
}

QString settingsIn(const QTemporaryDir &directory)
{
    return directory.filePath(QStringLiteral("settings.ini"));
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
    setEnvironment(environmentWith(settings.isEmpty() ? settingsIn(m_directory) : settings));
    start(QStringLiteral(ZYSLICER), arguments);
}

SlicerProcess::~SlicerProcess()
{
    kill();
    if (process().arguments().contains(QStringLiteral("--json")))
        keepLines(output());
}

bool SlicerProcess::waitForExit()
{
    return waitForEnd(longTime) && exitCode() != -1;
}

QJsonObject SlicerProcess::waitForEvent(const QString &event)
{
    const auto events = [&] {
        // The last line may not be whole yet.
        return eventsNamed(event, output().left(output().lastIndexOf('\n') + 1));
    };
    zytest::waitUntil([&] { return !events().isEmpty() || !isRunning(); }, longTime);
    return events().isEmpty() ? QJsonObject() : events().last();
}

void SlicerProcess::interrupt()
{
    signal(SIGINT);
}

void SlicerProcess::terminate()
{
    signal(SIGTERM);
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
    QProcess shell;
    shell.setProcessEnvironment(environmentWith(settingsIn(directory)));
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
