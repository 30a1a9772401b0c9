// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Listening, accepting and the registry of connections.

#include "endings.h"
#include "logcapture.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "rawtcppeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTcpServer>
#include <QTest>

#include <memory>
#include <vector>

using namespace zytest;

class WifiFileState
{
};

class TestListening : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listensOnAPortOfTheSystemsChoice();
    void listensOnTheGivenPort();
    void listensOnEveryAddress();
    void speaksPlainWebSocket_data();
    void speaksPlainWebSocket();
    void acceptsAnyNumberOfConnections();
    void acceptsWhileAnotherConnectionReceives();
    void makesOneChildHandlePerConnection();
    void forgetsAConnectionThatEnded();
    void stopsListeningWhenDestroyed();
    void endsItsConnectionsWhenDestroyed();
    void isDestroyedWithItsParent();

    void livesOnWhenThePortIsTaken();
    void ignoresOnNewConnectionWithNothingPending();
    void ignoresATcpConnectionThatNeverShakesHands();
    void saysOnceThatAReceivingConnectionEnded_data();
    void saysOnceThatAReceivingConnectionEnded();
    void saysNothingWhenAnIdleConnectionEnds_data();
    void saysNothingWhenAnIdleConnectionEnds();
};

void TestListening::listensOnAPortOfTheSystemsChoice()
{
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    QVERIFY(server.isListening());
    QVERIFY(server.serverPort() != 0);
    QVERIFY(RawPeer(server.serverPort()).isConnected());
}

void TestListening::listensOnTheGivenPort()
{
    // Another program may take the port between the two, so it is tried again.
    for (int attempt = 0; attempt < 20; ++attempt) {
        QTcpServer finder;
        QVERIFY(finder.listen());
        const quint16 port = finder.serverPort();
        finder.close();
        LogCapture log;
        WifiFileState state;
        const ZySslEchoServer server(port, {}, {}, {}, &state);
        if (!server.isListening())
            continue;
        QCOMPARE(server.serverPort(), port);
        QVERIFY(RawPeer(port).isConnected());
        QCOMPARE(log.texts(QStringLiteral("zywebsocket.server")).value(1),
                 QStringLiteral("SSL Echo Server listening on port %1").arg(port));
        return;
    }
    QFAIL("No free port in twenty attempts");
}

void TestListening::listensOnEveryAddress()
{
    TestPrinter printer;
    for (const char *address : {"127.0.0.1", "127.1.2.3"}) {
        QWebSocket socket;
        socket.open(QUrl(QStringLiteral("ws://%1:%2")
                             .arg(QLatin1String(address), QString::number(printer.port()))));
        QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::ConnectedState, patience);
    }
}

void TestListening::speaksPlainWebSocket_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("no files") << QByteArray();
    QTest::newRow("files that are no PEM") << QByteArrayLiteral("neither certificate nor key");
    QTest::newRow("a PEM frame around nothing")
        << QByteArrayLiteral("-----BEGIN CERTIFICATE-----\n-----END CERTIFICATE-----\n");
}

void TestListening::speaksPlainWebSocket()
{
    QFETCH(QByteArray, contents);
    const QTemporaryDir dir;
    if (!contents.isNull()) {
        writeFile(dir.filePath(QStringLiteral("cert")), contents);
        writeFile(dir.filePath(QStringLiteral("key")), contents);
    }
    const ZySslEchoServer server(0, dir.filePath(QStringLiteral("cert")),
                                 dir.filePath(QStringLiteral("key")), dir.path(), nullptr);
    RawPeer peer(server.serverPort());
    QCOMPARE(peer.ask(R"({"cmd":"VERSION_CHECK"})"), json(R"({"version":""})"));
}

void TestListening::acceptsAnyNumberOfConnections()
{
    TestPrinter printer;
    std::vector<std::unique_ptr<RawPeer>> peers;
    for (int i = 0; i < 40; ++i)
        peers.push_back(std::make_unique<RawPeer>(printer.port()));
    QVERIFY(printer.waitForConnections(40));
    for (const auto &peer : peers)
        QCOMPARE(peer->ask(R"({"cmd":"VERSION_CHECK"})"), json(R"({"version":"1"})"));
}

void TestListening::acceptsWhileAnotherConnectionReceives()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    receiving.send(startFile(QStringLiteral("a.zydlp"), 100));
    receiving.take();
    RawPeer other(printer.port());
    QCOMPARE(other.ask(R"({"cmd":"VERSION_CHECK"})"), json(R"({"version":"1"})"));
}

void TestListening::makesOneChildHandlePerConnection()
{
    TestPrinter printer;
    QCOMPARE(printer.handles().size(), 0);
    RawPeer first(printer.port());
    QVERIFY(printer.waitForConnections(1));
    RawPeer second(printer.port());
    QVERIFY(printer.waitForConnections(2));
    for (const ZyFileTransHandle *handle : printer.handles())
        QCOMPARE(handle->parent(), printer.server());
}

void TestListening::forgetsAConnectionThatEnded()
{
    TestPrinter printer;
    RawPeer staying(printer.port());
    {
        RawPeer leaving(printer.port());
        QVERIFY(printer.waitForConnections(2));
        QVERIFY(leaving.close());
    }
    QVERIFY(printer.waitForConnections(1));
    QVERIFY(staying.expectNothing());
}

void TestListening::stopsListeningWhenDestroyed()
{
    TestPrinter printer;
    printer.destroyServer();
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), printer.port());
    QVERIFY(!socket.waitForConnected(patience));
    QCOMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
}

void TestListening::endsItsConnectionsWhenDestroyed()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawTcpPeer second(printer.port());
    QVERIFY(printer.waitForConnections(2));
    printer.destroyServer();
    QTRY_COMPARE_WITH_TIMEOUT(first.socket().state(), QAbstractSocket::UnconnectedState, patience);
    QTRY_VERIFY_WITH_TIMEOUT(second.isEnded(), patience);
    QCOMPARE(printer.host().calls(), QStringList());
}

void TestListening::isDestroyedWithItsParent()
{
    auto parent = std::make_unique<QObject>();
    const QPointer<ZySslEchoServer> server(
        new ZySslEchoServer(0, {}, {}, {}, nullptr, parent.get()));
    RawPeer peer(server->serverPort());
    parent.reset();
    QVERIFY(!server);
    QTRY_COMPARE_WITH_TIMEOUT(peer.socket().state(), QAbstractSocket::UnconnectedState, patience);
}

void TestListening::livesOnWhenThePortIsTaken()
{
    QTcpServer owner;
    QVERIFY(owner.listen());
    LogCapture log;
    ZySslEchoServer server(owner.serverPort(), {}, {}, {}, nullptr);
    QCOMPARE(log.texts(QStringLiteral("zywebsocket.server")),
             QStringList({QStringLiteral("hh"), QStringLiteral("server start ")}));
    QVERIFY(!server.isListening());
    QCOMPARE(server.serverPort(), 0);
    owner.close();
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), owner.serverPort());
    QVERIFY(!socket.waitForConnected(patience));
    server.onNewConnection();
    QCOMPARE(server.getVersionCheck(), QString());
}

void TestListening::ignoresOnNewConnectionWithNothingPending()
{
    TestPrinter printer;
    printer.server()->onNewConnection();
    QVERIFY(QMetaObject::invokeMethod(printer.server(), "onNewConnection"));
    QCOMPARE(printer.handles().size(), 0);
    RawPeer peer(printer.port());
    QVERIFY(peer.expectNothing());
    printer.server()->onNewConnection();
    QCOMPARE(printer.handles().size(), 1);
    QVERIFY(peer.expectNothing());
}

void TestListening::ignoresATcpConnectionThatNeverShakesHands()
{
    TestPrinter printer;
    QTcpSocket silent;
    silent.connectToHost(QStringLiteral("127.0.0.1"), printer.port());
    QVERIFY(silent.waitForConnected(patience));
    QTcpSocket wrong;
    wrong.connectToHost(QStringLiteral("127.0.0.1"), printer.port());
    QVERIFY(wrong.waitForConnected(patience));
    wrong.write("START_FILE\r\n\r\n");
    wrong.flush();
    RawPeer peer(printer.port());
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.handles().size(), 1);
}

void TestListening::saysOnceThatAReceivingConnectionEnded_data()
{
    addEndings();
}

void TestListening::saysOnceThatAReceivingConnectionEnded()
{
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    peer.sendText(QJsonDocument(startFile(QStringLiteral("a.zydlp"), 100)).toJson());
    QVERIFY(!peer.takeText().isNull());
    end(peer, ending);
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(
        printer.host().calls(),
        QStringList({QStringLiteral("getPrintState(0, , false)"), QStringLiteral("fileTranStart()"),
                     QStringLiteral("fileTranDisconnet()")}));
}

void TestListening::saysNothingWhenAnIdleConnectionEnds_data()
{
    addEndings();
}

void TestListening::saysNothingWhenAnIdleConnectionEnds()
{
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    end(peer, ending);
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(printer.host().calls(), QStringList());
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

ZY_TEST(TestListening)
#include "tst_listening.moc"
