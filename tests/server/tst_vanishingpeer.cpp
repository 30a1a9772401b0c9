// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Peers that leave between any two messages, or in the middle of one.

#include "endings.h"
#include "hostsignals.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

#include <memory>
#include <vector>

using namespace zytest;

namespace
{

struct Session {
    QList<QByteArray> frames;
    QList<int> repliesAfter; ///< replies in all, once each frame is handled
};

/// Two transfers, a cancel, a print and every small command.
Session wholeSession()
{
    return {{startFileFrame("6"), chunkFrame("abc"), chunkFrame("def"), commandFrame("START_PRINT"),
             startFileFrame("6"), chunkFrame("abc"), commandFrame("CANCEL_FILE"),
             commandFrame("PRINT_PAUSE"), commandFrame("GET_PRINT_STATUS"),
             commandFrame("VERSION_CHECK"), commandFrame("PRINT_PARA_SET"),
             commandFrame("PRINT_STOP")},
            {1, 2, 4, 6, 7, 8, 9, 10, 11, 12, 13, 14}};
}

bool isServed(TestPrinter &printer)
{
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("after.txt"), 5, QStringLiteral("2f6e6577")));
    if (peer.take().value(QStringLiteral("offset")) != QJsonValue(QStringLiteral("0")))
        return false;
    peer.sendChunk("after");
    return peer.take() == startData(5, 5, 0, QStringLiteral("2f6e6577"))
        && peer.take() == checkData(1, QStringLiteral("2f6e6577"))
        && readFile(printer.path(QStringLiteral("after.txt"))) == QByteArrayLiteral("after");
}

} // namespace

class TestVanishingPeer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesAfterTheReply_data();
    void leavesAfterTheReply();
    void leavesWithoutWaitingForTheReply_data();
    void leavesWithoutWaitingForTheReply();
    void leavesInTheMiddleOfAFrame_data();
    void leavesInTheMiddleOfAFrame();
    void leavesInTheMiddleOfAFragmentedMessage_data();
    void leavesInTheMiddleOfAFragmentedMessage();
    void leavesDuringTheHandshake();
    void breaksTheWebSocketProtocol_data();
    void breaksTheWebSocketProtocol();
    void comesAndGoesInCrowds();
};

static void addSessionRows()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<Ending>("ending");
    for (int count = 0; count <= wholeSession().frames.size(); ++count) {
        QTest::addRow("%d messages, close frame", count) << count << OrderlyClose;
        QTest::addRow("%d messages, end of TCP", count) << count << TcpEnd;
        QTest::addRow("%d messages, TCP reset", count) << count << TcpReset;
    }
}

void TestVanishingPeer::leavesAfterTheReply_data()
{
    addSessionRows();
}

void TestVanishingPeer::leavesAfterTheReply()
{
    QFETCH(int, count);
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    const Session session = wholeSession();
    for (int i = 0; i < count; ++i) {
        peer.write(session.frames.at(i));
        QVERIFY(waitUntil([&] { return peer.texts().size() == session.repliesAfter.at(i); }));
    }
    QVERIFY(printer.waitForConnections(1));
    const bool isReceiving = printer.lastStatus() == 2;
    end(peer, ending);
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), isReceiving ? 1 : 0);
    QCOMPARE(QFile::exists(printer.temporaryFile()), isReceiving);
    QVERIFY(isServed(printer));
}

void TestVanishingPeer::leavesWithoutWaitingForTheReply_data()
{
    addSessionRows();
}

void TestVanishingPeer::leavesWithoutWaitingForTheReply()
{
    QFETCH(int, count);
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    QByteArray burst;
    const Session session = wholeSession();
    for (int i = 0; i < count; ++i)
        burst += session.frames.at(i);
    peer.write(burst);
    end(peer, ending);
    QVERIFY(printer.waitForConnections(0));
    QVERIFY(isServed(printer));
}

void TestVanishingPeer::leavesInTheMiddleOfAFrame_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<Ending>("ending");
    for (const bool isText : {true, false}) {
        const QByteArray frame = isText ? commandFrame("VERSION_CHECK") : chunkFrame("abc");
        const char *kind = isText ? "text" : "data";
        QTest::addRow("%s, close frame", kind) << frame << OrderlyClose;
        QTest::addRow("%s, end of TCP", kind) << frame << TcpEnd;
        QTest::addRow("%s, TCP reset", kind) << frame << TcpReset;
    }
}

void TestVanishingPeer::leavesInTheMiddleOfAFrame()
{
    QFETCH(QByteArray, frame);
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawPeer receiving(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 6));
    receiving.take();
    for (int cut = 1; cut < frame.size(); ++cut) {
        RawTcpPeer peer(printer.port());
        QVERIFY(printer.waitForConnections(2));
        peer.write(frame.left(cut));
        if (ending == OrderlyClose) {
            // What follows half a frame belongs to it, so the close is no close.
            end(peer, ending);
            QVERIFY(receiving.expectNothing());
            peer.reset();
        } else {
            end(peer, ending);
        }
        QVERIFY(printer.waitForConnections(1));
    }
    // No half message has been taken for a whole one.
    receiving.sendChunk("abcdef");
    QCOMPARE(receiving.take(), startData(6, 6));
    QCOMPARE(receiving.take(), checkData(1));
    QVERIFY(isServed(printer));
}

void TestVanishingPeer::leavesInTheMiddleOfAFragmentedMessage_data()
{
    addEndings();
}

void TestVanishingPeer::leavesInTheMiddleOfAFragmentedMessage()
{
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawPeer receiving(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 6));
    receiving.take();
    for (const RawTcpPeer::Opcode opcode : {RawTcpPeer::Text, RawTcpPeer::Binary}) {
        RawTcpPeer peer(printer.port());
        QVERIFY(printer.waitForConnections(2));
        peer.write(RawTcpPeer::frame(opcode, qCompress("abc"), false));
        end(peer, ending);
        QVERIFY(printer.waitForConnections(1));
    }
    QVERIFY(receiving.expectNothing());
    receiving.sendChunk("abcdef");
    QCOMPARE(receiving.take(), startData(6, 6));
    QCOMPARE(receiving.take(), checkData(1));
}

void TestVanishingPeer::leavesDuringTheHandshake()
{
    TestPrinter printer;
    const QByteArray handshake("GET / HTTP/1.1\r\nHost: 127.0.0.1\r\nUpgrade: websocket\r\n"
                               "Connection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                               "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    for (int cut = 0; cut <= handshake.size(); cut += 16) {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), printer.port());
        QVERIFY(socket.waitForConnected(patience));
        socket.write(handshake.left(cut));
        socket.flush();
        socket.abort();
    }
    QVERIFY(isServed(printer));
    QVERIFY(printer.waitForConnections(0));
}

void TestVanishingPeer::breaksTheWebSocketProtocol_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray unmasked = commandFrame("VERSION_CHECK");
    unmasked[1] = static_cast<char>(unmasked.at(1) & 0x7f);
    QTest::newRow("an unmasked frame") << unmasked;
    QTest::newRow("an unknown opcode") << QByteArray::fromHex("8b8012345678");
    QTest::newRow("reserved bits") << QByteArray::fromHex("f18012345678");
    QTest::newRow("a continuation of nothing")
        << RawTcpPeer::frame(RawTcpPeer::Continuation, "abc");
    QTest::newRow("text that is not UTF-8")
        << RawTcpPeer::frame(RawTcpPeer::Text, QByteArray::fromHex("ff7b7d"));
    QTest::newRow("a frame of 2^62 bytes") << QByteArray::fromHex("82ff400000000000000012345678");
}

void TestVanishingPeer::breaksTheWebSocketProtocol()
{
    QFETCH(QByteArray, bytes);
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    peer.write(bytes);
    QVERIFY(isServed(printer));
    QCOMPARE(peer.texts(), QStringList());
    peer.reset();
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(printer.host().count(QStringLiteral("sifGetVersionCheck")), 0);
}

void TestVanishingPeer::comesAndGoesInCrowds()
{
    TestPrinter printer;
    for (int round = 0; round < 5; ++round) {
        std::vector<std::unique_ptr<RawTcpPeer>> crowd;
        for (int i = 0; i < 12; ++i) {
            crowd.push_back(std::make_unique<RawTcpPeer>(printer.port()));
            crowd.back()->write(startFileFrame() + commandFrame("START_PRINT"));
        }
        for (std::size_t i = 0; i < crowd.size(); ++i)
            end(*crowd.at(i), static_cast<Ending>(i % 3));
        QVERIFY(printer.waitForConnections(0));
    }
    QVERIFY(isServed(printer));
}

ZY_TEST(TestVanishingPeer)
#include "tst_vanishingpeer.moc"
