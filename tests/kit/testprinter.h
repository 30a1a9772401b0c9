// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A server with its host and its receive directory, ready for peers.

#ifndef TESTPRINTER_H
#define TESTPRINTER_H

#include <QPointer>
#include <QTemporaryDir>

#include <memory>

#include <zyfiletranshandle.h>
#include <zysslechoserver.h>

#include "recordinghost.h"

namespace zytest
{

/// Listens on a port that the system chooses and receives into its own directory.
class TestPrinter
{
public:
    TestPrinter();
    /// The same with the protection that @p options ask for.
    explicit TestPrinter(const ZyServerOptions &options);
    ~TestPrinter();

    RecordingHost &host() { return *m_host; }
    /// Null once the server is gone.
    ZySslEchoServer *server() const { return m_server; }
    quint16 port() const { return m_port; }
    QString dir() const { return m_dir.path(); }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    /// The reception file.
    QString temporaryFile() const { return path(QStringLiteral("wifi_tranfer.tmp")); }

    /// The live handles in order of arrival.
    QList<ZyFileTransHandle *> handles() const;
    /// The newest handle's status(); -1 without a handle.
    int lastStatus() const;
    /// Waits until exactly @p count connections are left.
    bool waitForConnections(int count) const;

    /// Deletes the server at once.
    void destroyServer();

private:
    Q_DISABLE_COPY(TestPrinter)

    QTemporaryDir m_dir;
    QPointer<ZySslEchoServer> m_server;
    std::unique_ptr<RecordingHost> m_host;
    quint16 m_port;
};

} // namespace zytest

#endif // TESTPRINTER_H
