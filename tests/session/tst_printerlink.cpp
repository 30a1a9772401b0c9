// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection for commands: why it does not come about, how it ends, how it is opened anew.

#include "bench.h"
#include "testprogram.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace zytest;
using Ending = Exchange::Ending;

class TestPrinterLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAnewOnTheSameLink();
    void saysWhyNoConnectionComesAbout_data();
    void saysWhyNoConnectionComesAbout();
    void saysThatTheHandshakeIsRefused_data();
    void saysThatTheHandshakeIsRefused();
    void noticesThatThePrinterIsGone();
    void staysSilentOnceClosed();
};

void TestPrinterLink::opensAnewOnTheSameLink()
{
    Bench bench;
    bench.proxy.cut();
    QVERIFY(waitUntil([&] { return !bench.link.isOpen(); }));
    QCOMPARE(outcomeOfOpening(bench.link), Fault::None);
    QCOMPARE(outcomeOfOpening(bench.link), Fault::None); // open already
    QCOMPARE(bench.proxy.connectionCount(), 2);
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.askVersion(); }), Ending::Done);
}

void TestPrinterLink::saysWhyNoConnectionComesAbout_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<Fault>("fault");
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    QTest::newRow("refused") << urlOf(closed.serverPort()) << Fault::Refused;
    QTest::newRow("unknown host") << QUrl("ws://printer.invalid:80"_s) << Fault::UnknownHost;
    QTest::newRow("scheme") << QUrl("http://127.0.0.1:80"_s) << Fault::BadAddress;
    QTest::newRow("no URL") << QUrl() << Fault::BadAddress;
}

void TestPrinterLink::saysWhyNoConnectionComesAbout()
{
    QFETCH(QUrl, url);
    QFETCH(Fault, fault);
    PrinterLink link(url, {});
    QCOMPARE(outcomeOfOpening(link), fault);
    QVERIFY(!link.wasOpen());
    QCOMPARE(link.faultText().isEmpty(), fault == Fault::BadAddress);
}

void TestPrinterLink::saysThatTheHandshakeIsRefused_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("isClosed"); // after the answer
    QTest::addColumn<QByteArray>("scheme");
    QTest::addColumn<Fault>("fault");
    const QByteArray page = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
    QTest::newRow("web server") << page << true << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("web server that waits")
        << page << false << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("another protocol")
        << QByteArray("220 ready\r\n\r\n") << false << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("no answer at all")
        << QByteArray() << true << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("silence") << QByteArray() << false << QByteArray("ws") << Fault::TimedOut;
    QTest::newRow("no TLS") << page << true << QByteArray("wss") << Fault::Tls;
}

void TestPrinterLink::saysThatTheHandshakeIsRefused()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, isClosed);
    QFETCH(QByteArray, scheme);
    QFETCH(Fault, fault);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, [=] {
            socket->write(answer);
            if (isClosed)
                socket->disconnectFromHost();
        });
    });
    TimeLimits limits;
    // Only silence takes as long as it may.
    limits.connecting = fault == Fault::TimedOut ? 100 : zytest::patience * 2;
    PrinterLink link(urlOf(server.serverPort(), scheme.constData()), limits);
    QCOMPARE(outcomeOfOpening(link), fault);
}

void TestPrinterLink::noticesThatThePrinterIsGone()
{
    Bench bench;
    int drops = 0;
    QObject::connect(&bench.link, &PrinterLink::dropped, [&] { ++drops; });
    bench.printer.destroyServer();
    QVERIFY(waitUntil([&] { return drops > 0; }));
    QVERIFY(!bench.link.isOpen());
    QCOMPARE(drops, 1);
    bench.proxy.freeze();
    bench.link.open();
    bench.link.close();
}

void TestPrinterLink::staysSilentOnceClosed()
{
    Bench bench;
    const auto never = [] { QFAIL("a closed link says something"); };
    QObject::connect(&bench.link, &PrinterLink::opened, never);
    QObject::connect(&bench.link, &PrinterLink::failed, never);
    QObject::connect(&bench.link, &PrinterLink::dropped, never);
    bench.link.close();
    QVERIFY(bench.printer.waitForConnections(0));
    bench.link.open();
    bench.link.close();
    QVERIFY(waitUntil([&] { return bench.proxy.connectionCount() == 2; }));
    QVERIFY(bench.printer.waitForConnections(0));
}

ZY_TEST(TestPrinterLink)

#include "tst_printerlink.moc"
