// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyprinter and its directory, for tests that talk to a real printer process.

#ifndef PRINTERPROCESS_H
#define PRINTERPROCESS_H

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

class PrinterProcess
{
public:
    /// Starts zyprinter, on a free port unless @p options name one, and waits until it says where
    /// it listens.
    explicit PrinterProcess(const QStringList &options = {});
    /// Ends it with SIGTERM.
    ~PrinterProcess();

    /// Where it listens; empty when it did not start.
    QUrl url() const { return m_url; }

    /// Its receive directory and everything below.
    QString directory() const { return m_directory.path(); }

    /// Path of the received file @p name, wherever the printer keeps it; empty when there is none.
    QString pathOf(const QString &name) const;

    /// Ends it with SIGKILL.
    void kill();

private:
    QTemporaryDir m_directory;
    QProcess m_process;
    QUrl m_url;
};

#endif // PRINTERPROCESS_H
