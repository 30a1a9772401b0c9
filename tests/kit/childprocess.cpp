// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A program that runs beside the test: its output awaited, its end waited for or brought about.

#include "childprocess.h"

#include <QTest>

#include <csignal>
#include <cstdio>

namespace zytest
{

void ChildProcess::GrowingFile::open(const QString &path)
{
    m_file.close();
    m_contents.clear();
    m_file.setFileName(path);
    m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

const QByteArray &ChildProcess::GrowingFile::contents() const
{
    if (m_file.isOpen())
        m_contents += m_file.readAll();
    return m_contents;
}

ChildProcess::ChildProcess(const QString &program, const QStringList &arguments)
{
    start(program, arguments);
}

ChildProcess::~ChildProcess()
{
    kill();
    if (QTest::currentTestFailed())
        std::fprintf(stderr, "%s printed:\n%s%s", qPrintable(m_process.program()),
                     output().constData(), errors().constData());
}

void ChildProcess::setEnvironment(const QProcessEnvironment &environment)
{
    m_process.setProcessEnvironment(environment);
}

void ChildProcess::start(const QString &program, const QStringList &arguments)
{
    const QString output = m_streams.filePath(QStringLiteral("output"));
    const QString errors = m_streams.filePath(QStringLiteral("errors"));
    m_process.setStandardOutputFile(output);
    m_process.setStandardErrorFile(errors);
    m_process.start(program, arguments);
    m_process.waitForStarted(patience);
    m_output.open(output);
    m_errors.open(errors);
}

int ChildProcess::exitCode() const
{
    const bool isOrderly = m_process.exitStatus() == QProcess::NormalExit
        && m_process.error() != QProcess::FailedToStart;
    return isOrderly ? m_process.exitCode() : -1;
}

bool ChildProcess::waitForOutput(const QByteArray &text, int timeout)
{
    waitUntil([&] { return output().contains(text) || !isRunning(); }, timeout);
    return output().contains(text);
}

bool ChildProcess::waitForEnd(int timeout)
{
    return waitUntil([this] { return m_process.state() == QProcess::NotRunning; }, timeout);
}

void ChildProcess::signal(int signalNumber) const
{
    // The identifier is 0 after its end, which would be this process and its group.
    if (processId() != 0)
        ::kill(static_cast<pid_t>(processId()), signalNumber);
}

int ChildProcess::stop(int signalNumber)
{
    signal(signalNumber);
    if (m_process.state() == QProcess::NotRunning || m_process.waitForFinished(patience))
        return exitCode();
    kill();
    return -1;
}

void ChildProcess::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(patience);
}

RunResult runProgram(const QString &program, const QStringList &arguments)
{
    ChildProcess child(program, arguments);
    if (!child.waitForEnd())
        return {};
    return {child.exitCode(), child.output(), child.errors()};
}

} // namespace zytest
