// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The TCP connection below the client: low delay and keep-alive, on every connection it makes.

#include "processview.h"
#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

using Session = zytest::Session<zytest::RawPrinter>;

class LinkTest : public QObject
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

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

/// The options of the client's end of the connection accepted last; empty when all are set.
QString missingOptions(const Session &session)
{
    const quint16 client = session.printer.peerPort();
    const quint16 printer = session.printer.port();
    if (zytest::connectionDescriptor(client, printer) < 0)
        return s("no connection");
    QString missing;
    if (zytest::connectionOption(client, printer, IPPROTO_TCP, TCP_NODELAY) != 1)
        missing += s("low delay ");
    if (zytest::connectionOption(client, printer, SOL_SOCKET, SO_KEEPALIVE) != 1)
        missing += s("keep-alive");
    return missing;
}

/// True once the client has connected and the printer has accepted @p count connections.
bool reconnected(const Session &session, int count)
{
    return zytest::waitUntil([&] {
        return session.printer.connectionCount() == count && session.printer.isPeerConnected()
            && session.trace.count(s("connected")) == 1;
    });
}

} // namespace

void LinkTest::setsItsOptionsOnceConnected()
{
    Session session;
    QVERIFY(session.open());
    QCOMPARE(missingOptions(session), QString());
}

void LinkTest::setsItsOptionsAfterClose()
{
    Session session;
    QVERIFY(session.open());
    session.client.close();
    session.client.openWithUrl(session.printer.url());
    QVERIFY(reconnected(session, 2));
    QCOMPARE(missingOptions(session), QString());
}

void LinkTest::setsItsOptionsAfterADrop()
{
    Session session;
    QVERIFY(session.open());
    session.printer.drop();
    WAIT_COMPARE(session.trace.names(), QStringList{s("disconnected")});
    session.client.openWithUrl(session.printer.url());
    QVERIFY(reconnected(session, 2));
    QCOMPARE(missingOptions(session), QString());
}

void LinkTest::setsItsOptionsOnAConnectionThatReplacesAnother()
{
    Session session;
    QVERIFY(session.open());
    session.client.openWithUrl(session.printer.url());
    QVERIFY(reconnected(session, 2));
    QCOMPARE(missingOptions(session), QString());
}

void LinkTest::setsItsOptionsInANestedLoop()
{
    Session session;
    QVERIFY(session.open());
    QString missing = s("never connected");
    // Qt deletes the socket before later, which is not before this slot has returned.
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        session.client.openWithUrl(session.printer.url());
        if (reconnected(session, 2))
            missing = missingOptions(session);
    });

    session.printer.write(zytest::RawPrinter::textFrame(s(R"({"version":"1"})")));

    WAIT_VERIFY(session.trace.count(s("jsonMessageReceived")) == 1);
    QCOMPARE(missing, QString());
}

ZY_TEST(LinkTest)

#include "tst_link.moc"
