// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyprinter and its directory, for tests that talk to a real printer process.

#include "printerprocess.h"

#include <QDirIterator>

#include <csignal>

namespace zytest
{

PrinterProcess::PrinterProcess(const QStringList &options)
{
    start(options);
}

PrinterProcess::~PrinterProcess()
{
    stop(SIGTERM);
}

bool PrinterProcess::start(const QStringList &options)
{
    stop(SIGTERM);
    QStringList arguments = options;
    if (!arguments.contains(QStringLiteral("--dir")))
        arguments << QStringLiteral("--dir") << directory();
    // The tests of the schemas put a proxy before it.
    ChildProcess::start(qEnvironmentVariable("ZYWS_PRINTER", QStringLiteral(ZYPRINTER)), arguments);
    const QByteArray prefix = "zyprinter: listening on ";
    const bool listens = waitForOutput("\n") && output().startsWith(prefix);
    const QByteArray line = output().left(output().indexOf('\n'));
    m_url = listens ? QUrl(QString::fromUtf8(line.mid(prefix.size()))) : QUrl();
    return listens;
}

QString PrinterProcess::pathOf(const QString &name) const
{
    QDirIterator files(directory(), {name}, QDir::Files, QDirIterator::Subdirectories);
    return files.hasNext() ? files.next() : QString();
}

} // namespace zytest
