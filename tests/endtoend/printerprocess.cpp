// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyprinter and its directory, for tests that talk to a real printer process.

#include "printerprocess.h"

#include <QDirIterator>
#include <QRegularExpression>

PrinterProcess::PrinterProcess(const QStringList &options)
{
    // Its log goes to a file: nobody would read a pipe while a test waits for something else.
    const QString log = m_directory.filePath(QStringLiteral("printer.log"));
    m_process.setStandardOutputFile(log);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QStringList fixed{QStringLiteral("--dir"), m_directory.path()};
    // The tests of the schemas put a proxy before it.
    m_process.start(qEnvironmentVariable("ZYWS_PRINTER", QStringLiteral(ZYPRINTER)),
                    fixed + options);
    if (!m_process.waitForStarted())
        return;
    static const QRegularExpression address(QStringLiteral("wss?://\\S+"));
    while (m_url.isEmpty() && !m_process.waitForFinished(20)) {
        QFile file(log);
        if (file.open(QIODevice::ReadOnly))
            m_url = QUrl(address.match(QString::fromUtf8(file.readLine())).captured());
    }
}

PrinterProcess::~PrinterProcess()
{
    m_process.terminate();
    if (!m_process.waitForFinished())
        m_process.kill();
    m_process.waitForFinished();
}

QString PrinterProcess::pathOf(const QString &name) const
{
    QDirIterator files(m_directory.path(), {name}, QDir::Files, QDirIterator::Subdirectories);
    return files.hasNext() ? files.next() : QString();
}

void PrinterProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}
