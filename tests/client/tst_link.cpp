// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The TCP connection below the client: low delay and keep-alive, on every connection it makes.

#include "processview.h"
#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

using Session = zytest::Session<zytest::RawPrinter>;

class TestLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setsItsOptionsOnceConnected();
    void setsItsOptionsAfterClose();
    void setsItsOptionsAfterADrop();
    void setsItsOptionsOnAConnectionThatReplacesAnother();
    void setsItsOptionsInANestedLoop();
};

namespace
{

/// The options of the client's end of the connection accepted last; empty when all are set.
QString missingOptions(const Session &session)
{
    const quint16 client = session.printer.peerPort();
    const quint16 printer = session.printer.port();
    if (zytest::connectionDescriptor(client, printer) < 0)
        return "no connection"_s;
    QString missing;
    if (zytest::connectionOption(client, printer, IPPROTO_TCP, TCP_NODELAY) != 1)
        missing += "low delay "_s;
    if (zytest::connectionOption(client, printer, SOL_SOCKET, SO_KEEPALIVE) != 1)
        missing += "keep-alive"_s;
    return missing;
}

/// True once the client has connected and the printer has accepted @p count connections.
bool reconnected(const Session &session, int count)
{
    return zytest::waitUntil([&] {
        return session.printer.connectionCount() == count && session.printer.isPeerConnected()
            && session.trace.count("connected"_s) == 1;
    });
}

} // namespace

void TestLink::setsItsOptionsOnceConnected()
{
    Session session;
    QVERIFY(session.open());
    QCOMPARE(missingOptions(session), QString());
}

void TestLink::setsItsOptionsAfterClose()
{
    Session session;
    QVERIFY(session.open());
    session.client.close();
    session.client.openWithUrl(session.printer.url());
    QVERIFY(reconnected(session, 2));
    QCOMPARE(missingOptions(session), QString());
}

void TestLink::setsItsOptionsAfterADrop()
{
    Session session;
    QVERIFY(session.open());
    session.printer.drop();
    WAIT_COMPARE(session.trace.names(), QStringList{"disconnected"_s});
    session.client.openWithUrl(session.printer.url());
    QVERIFY(reconnected(session, 2));
    QCOMPARE(missingOptions(session), QString());
}

void TestLink::setsItsOptionsOnAConnectionThatReplacesAnother()
{
    Session session;
    QVERIFY(session.open());
    session.client.openWithUrl(session.printer.url());
    QVERIFY(reconnected(session, 2));
    QCOMPARE(missingOptions(session), QString());
}

void TestLink::setsItsOptionsInANestedLoop()
{
    Session session;
    QVERIFY(session.open());
    QString missing = "never connected"_s;
    // Qt deletes the socket before later, which is not before this slot has returned.
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        session.client.openWithUrl(session.printer.url());
        if (reconnected(session, 2))
            missing = missingOptions(session);
    });

    session.printer.write(zytest::RawPrinter::textFrame(R"({"version":"1"})"_s));

    WAIT_VERIFY(session.trace.count("jsonMessageReceived"_s) == 1);
    QCOMPARE(missing, QString());
}

ZY_TEST(TestLink)

#include "tst_link.moc"
