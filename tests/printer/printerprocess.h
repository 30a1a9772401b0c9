// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The programs under test, run as processes.

#ifndef PRINTERPROCESS_H
#define PRINTERPROCESS_H

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

/// What a program that ends by itself left behind.
struct RunResult {
    int exitCode;
    QByteArray output;
    QByteArray error;
};

RunResult runPrinter(const QStringList &arguments);
RunResult runModel(const QStringList &arguments);

/// A zyprinter on a free port with a directory of its own.
class PrinterProcess
{
public:
    PrinterProcess();
    ~PrinterProcess();

    /// Starts it, "--dir" being given unless @p arguments hold it. False when it does not listen.
    bool start(const QStringList &arguments = {});
    /// Ends it with @p signalNumber. Its exit code, -1 when it crashed or stays.
    int stop(int signalNumber);

    QUrl url() const { return m_url; }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    qint64 processId() const { return m_process.processId(); }
    QByteArray output();
    QByteArray error();
    /// Waits for @p text on its standard output.
    bool says(const QByteArray &text);

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QByteArray m_output;
    QUrl m_url;
};

#endif // PRINTERPROCESS_H
