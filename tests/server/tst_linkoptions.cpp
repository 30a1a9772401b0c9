// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Accepted connections have low delay and keep-alive set.

#include "rawpeer.h"
#include "rawtcppeer.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QTest>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace zytest;

namespace
{

/// The port of the socket's own end, and of the other one; 0 where there is none.
int portOf(int descriptor, decltype(::getsockname) &name)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (name(descriptor, reinterpret_cast<sockaddr *>(&address), &length) != 0)
        return 0;
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in *>(&address)->sin_port);
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6 *>(&address)->sin6_port);
    return 0;
}

/// Descriptors of this process that are connections accepted on @p port.
QVector<int> acceptedOn(quint16 port)
{
    QVector<int> descriptors;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        if (portOf(descriptor, ::getsockname) == port && portOf(descriptor, ::getpeername) != 0)
            descriptors.append(descriptor);
    }
    return descriptors;
}

bool isOn(int descriptor, int level, int option)
{
    int value = 0;
    socklen_t length = sizeof value;
    return ::getsockopt(descriptor, level, option, &value, &length) == 0 && value != 0;
}

} // namespace

class TestLinkOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areSetOnEveryAcceptedConnection();
};

void TestLinkOptions::areSetOnEveryAcceptedConnection()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawTcpPeer second(printer.port());
    QVERIFY(printer.waitForConnections(2));
    const QVector<int> accepted = acceptedOn(printer.port());
    QCOMPARE(accepted.size(), 2);
    for (const int descriptor : accepted) {
        QVERIFY(isOn(descriptor, IPPROTO_TCP, TCP_NODELAY));
        QVERIFY(isOn(descriptor, SOL_SOCKET, SO_KEEPALIVE));
    }
}

ZY_TEST(TestLinkOptions)
#include "tst_linkoptions.moc"
