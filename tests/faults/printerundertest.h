// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's process with its receive directory, and senders that give it something to do.

#ifndef PRINTERUNDERTEST_H
#define PRINTERUNDERTEST_H

#include "faultprocess.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace zytest
{

class MessageGate;

const QString finishedName = QStringLiteral("part.bin");
const QString temporaryName = QStringLiteral("wifi_tranfer.tmp");

/// True when programs can be run under @p wrapper on this system.
bool works(QStringList wrapper);

class PrinterUnderTest
{
public:
    PrinterUnderTest();

    /// Starts the process; false when that fails. See FaultProcess for @p wrapper.
    bool start(const QStringList &options = {}, const QStringList &wrapper = {});
    bool isStarted() const { return m_host != nullptr; }
    HostProcess &host() { return *m_host; }

    QString directory() const { return m_directory.path(); }
    /// The receive directory has another path for us than for the printer.
    void setSeenDirectory(const QString &path) { m_seenDirectory = path; }
    /// Path of @p name in the receive directory.
    QString pathOf(const QString &name) const { return QDir(m_seenDirectory).filePath(name); }

    std::unique_ptr<SenderProcess> send(const QByteArray &contents,
                                        const QStringList &options = {});
    /// A sender that has got so far that @p gate stands still; null when it has not.
    std::unique_ptr<SenderProcess> sendUpTo(MessageGate &gate, const QByteArray &contents,
                                            const QStringList &options = {},
                                            const QStringList &wrapper = {});
    /// Sends another file, and ends the printer in order.
    void verifyNextJobSucceeds();

private:
    QString file(const QByteArray &contents);

    QTemporaryDir m_local;
    QTemporaryDir m_directory;
    QString m_seenDirectory;
    std::unique_ptr<HostProcess> m_host;
};

} // namespace zytest

#endif // PRINTERUNDERTEST_H
