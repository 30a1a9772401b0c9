// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A running zyprinter and its directory, for tests that talk to a real printer process.

#ifndef PRINTERPROCESS_H
#define PRINTERPROCESS_H

#include "childprocess.h"

#include <QUrl>

namespace zytest
{

class PrinterProcess : public ChildProcess
{
public:
    enum Readiness { NotStarted };

    /// Starts zyprinter, on a free port unless @p options name one, and waits until it says where
    /// it listens.
    explicit PrinterProcess(const QStringList &options = {});
    /// For a test that calls start() itself, its directory being there already.
    explicit PrinterProcess(Readiness) { }
    /// Ends it with SIGTERM.
    ~PrinterProcess() override;

    /// Starts it, "--dir" being given unless @p options hold it; also after its end, in the same
    /// directory. False when it does not listen.
    bool start(const QStringList &options = {});

    /// Where it listens; empty when it did not start.
    QUrl url() const { return m_url; }

    /// Its receive directory and everything below.
    QString directory() const { return m_directory.path(); }
    /// Where @p name is or would be, directly in that directory.
    QString path(const QString &name) const { return m_directory.filePath(name); }
    /// Path of the received file @p name, wherever the printer keeps it; empty when there is none.
    QString pathOf(const QString &name) const;

private:
    QTemporaryDir m_directory;
    QUrl m_url;
};

} // namespace zytest

using zytest::PrinterProcess;

#endif // PRINTERPROCESS_H
