// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A server with its host and its receive directory, ready for peers.

#include "testprinter.h"

#include "waiting.h"

#include <QDir>

namespace zytest
{

TestPrinter::TestPrinter()
    : m_server(new ZySslEchoServer(0, {}, {}, m_dir.path(), nullptr)),
      m_host(std::make_unique<RecordingHost>(m_server)), m_port(m_server->serverPort())
{
}

TestPrinter::TestPrinter(const ZyServerOptions &options)
    : m_server(new ZySslEchoServer(0, m_dir.path(), options)),
      m_host(std::make_unique<RecordingHost>(m_server)), m_port(m_server->serverPort())
{
}

TestPrinter::~TestPrinter()
{
    // Hooks may refer to peers of the test that are gone by now.
    m_host.reset();
    destroyServer();
    // Receptions made the directory current, and it is about to be removed.
    QDir::setCurrent(QDir::tempPath());
}

QList<ZyFileTransHandle *> TestPrinter::handles() const
{
    return m_server ? m_server->findChildren<ZyFileTransHandle *>() : QList<ZyFileTransHandle *>();
}

int TestPrinter::lastStatus() const
{
    const QList<ZyFileTransHandle *> all = handles();
    return all.isEmpty() ? -1 : all.last()->status();
}

bool TestPrinter::waitForConnections(int count) const
{
    return waitUntil([=] { return handles().size() == count; });
}

void TestPrinter::destroyServer()
{
    delete m_server.data();
}

} // namespace zytest
