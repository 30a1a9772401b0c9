// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The programs under test, run as processes.

#include "printerprocess.h"

#include <QtTest>

#include <csignal>

namespace
{

constexpr int patience = 30000; // ms

RunResult run(const char *program, const QStringList &arguments)
{
    QProcess process;
    process.start(QString::fromLocal8Bit(program), arguments);
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        process.waitForFinished();
        return {-1, process.readAllStandardOutput(), process.readAllStandardError()};
    }
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace

RunResult runPrinter(const QStringList &arguments)
{
    return run(ZYPRINTER, arguments);
}

RunResult runModel(const QStringList &arguments)
{
    return run(ZYMODEL, arguments);
}

PrinterProcess::PrinterProcess() = default;

PrinterProcess::~PrinterProcess()
{
    if (m_process.state() != QProcess::NotRunning)
        stop(SIGTERM);
}

bool PrinterProcess::start(const QStringList &arguments)
{
    QStringList all = arguments;
    if (!all.contains(QStringLiteral("--dir")))
        all << QStringLiteral("--dir") << m_dir.path();
    m_output.clear();
    m_process.start(QString::fromLocal8Bit(ZYPRINTER), all);
    if (!says("\n"))
        return false;
    const QByteArray prefix = "zyprinter: listening on ";
    const QByteArray line = m_output.left(m_output.indexOf('\n'));
    m_url = QUrl(QString::fromUtf8(line.mid(prefix.size())));
    return line.startsWith(prefix);
}

int PrinterProcess::stop(int signalNumber)
{
    ::kill(pid_t(m_process.processId()), signalNumber);
    if (!m_process.waitForFinished(patience)) {
        m_process.kill();
        m_process.waitForFinished();
        return -1;
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QByteArray PrinterProcess::output()
{
    m_output += m_process.readAllStandardOutput();
    return m_output;
}

QByteArray PrinterProcess::error()
{
    return m_process.readAllStandardError();
}

bool PrinterProcess::says(const QByteArray &text)
{
    return QTest::qWaitFor([&] { return output().contains(text); }, patience);
}
