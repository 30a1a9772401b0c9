// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The server destroyed where it hurts: inside every host slot, and while it receives.

#include "hostsignals.h"
#include "logcapture.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <vector>

using namespace zytest;

Q_DECLARE_METATYPE(zytest::HostSignal)

class TestDestruction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesTheRecordOfAReceptionUnderWay();
    void endsManyConnections();

    void isDeletedInsideAHostsSlot_data();
    void isDeletedInsideAHostsSlot();
    void isDeletedInsideASlotThatIsNested_data();
    void isDeletedInsideASlotThatIsNested();
    void spinsWhileItIsDestroyed();
    void losesPeersWhileItIsDestroyed();
    void isDeletedWithMessagesWaiting();
    void dropsMessagesThatWaitForAConnectionItHasEnded();
    void endsEachConnectionOnce();
};

void TestDestruction::savesTheRecordOfAReceptionUnderWay()
{
    TestPrinter printer;
    RawPeer idle(printer.port());
    RawPeer receiving(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 6));
    receiving.sendChunk("abc");
    QVERIFY(receiving.waitForReplies(2));
    printer.destroyServer();
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
    QCOMPARE(readFile(printer.temporaryFile()).toHex(),
             QByteArrayLiteral("616263000000"
                               "00000000000000060000000000000003"
                               "0000000a0061002e007400780074"
                               "0000001000370038003500360033003400310032"));
    QTRY_COMPARE_WITH_TIMEOUT(receiving.socket().state(), QAbstractSocket::UnconnectedState,
                              patience);
    QTRY_COMPARE_WITH_TIMEOUT(idle.socket().state(), QAbstractSocket::UnconnectedState, patience);
}

void TestDestruction::endsManyConnections()
{
    TestPrinter printer;
    std::vector<std::unique_ptr<RawPeer>> peers;
    for (int i = 0; i < 20; ++i)
        peers.push_back(std::make_unique<RawPeer>(printer.port()));
    QVERIFY(printer.waitForConnections(20));
    LogCapture log;
    printer.destroyServer();
    QCOMPARE(log.texts(QStringLiteral("zywebsocket.server"))
                 .count(QStringLiteral("Client disconnected")),
             20);
    for (const auto &peer : peers) {
        QVERIFY(
            waitUntil([&] { return peer->socket().state() == QAbstractSocket::UnconnectedState; }));
    }
}

enum Deletion { DeleteAtOnce, DeleteAtOnceAndSpin, DeleteLaterAndSpin };
Q_DECLARE_METATYPE(Deletion)

static void deleteServer(TestPrinter &printer, Deletion deletion, const RawTcpPeer &peer)
{
    if (deletion == DeleteLaterAndSpin) {
        // Qt deletes it once the loop that this slot was called from goes on.
        printer.server()->deleteLater();
        spinOnce();
        return;
    }
    printer.destroyServer();
    if (deletion == DeleteAtOnceAndSpin) {
        QVERIFY(waitUntil([&] { return peer.isEnded(); }));
        spinOnce();
    }
}

static void addDeletions()
{
    QTest::addColumn<HostSignal>("signal");
    QTest::addColumn<Deletion>("deletion");
    const QList<HostSignal> all = hostSignals();
    for (const HostSignal &signal : all) {
        QTest::addRow("%s, delete", signal.name) << signal << DeleteAtOnce;
        QTest::addRow("%s, delete, then spin", signal.name) << signal << DeleteAtOnceAndSpin;
        QTest::addRow("%s, deleteLater, then spin", signal.name) << signal << DeleteLaterAndSpin;
    }
}

void TestDestruction::isDeletedInsideAHostsSlot_data()
{
    addDeletions();
}

void TestDestruction::isDeletedInsideAHostsSlot()
{
    QFETCH(HostSignal, signal);
    QFETCH(Deletion, deletion);
    TestPrinter printer;
    RawPeer other(printer.port());
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(2));
    bool isOver = false;
    const QString name = QString::fromLatin1(signal.name);
    printer.host().during(name, [&] {
        printer.host().during(name, {});
        deleteServer(printer, deletion, peer);
        isOver = true;
    });
    QVERIFY(provoke(signal, peer));
    QVERIFY(waitUntil([&] { return isOver && !printer.server(); }));
    QVERIFY(waitUntil([&] {
        return other.socket().state() == QAbstractSocket::UnconnectedState && peer.isEnded();
    }));
    QCOMPARE(other.texts(), QStringList());
}

void TestDestruction::isDeletedInsideASlotThatIsNested_data()
{
    addDeletions();
}

void TestDestruction::isDeletedInsideASlotThatIsNested()
{
    QFETCH(HostSignal, signal);
    QFETCH(Deletion, deletion);
    TestPrinter printer;
    RawTcpPeer inner(printer.port());
    RawTcpPeer outer(printer.port());
    QVERIFY(printer.waitForConnections(2));
    bool isOver = false;
    const QString name = QString::fromLatin1(signal.name);
    printer.host().during(name, [&] {
        printer.host().during(name, {});
        printer.host().during(QStringLiteral("sigDoPrintPause"), [&] {
            deleteServer(printer, deletion, outer);
            isOver = true;
        });
        inner.write(commandFrame("PRINT_PAUSE"));
        QVERIFY(waitUntil([&] { return isOver && !printer.server(); }));
    });
    QVERIFY(provoke(signal, outer));
    QVERIFY(waitUntil([&] { return isOver && inner.isEnded() && outer.isEnded(); }));
}

void TestDestruction::spinsWhileItIsDestroyed()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawPeer receiving(printer.port());
    RawPeer last(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 6));
    receiving.take();
    QVERIFY(printer.waitForConnections(3));
    printer.host().during(QStringLiteral("fileTranDisconnet"), [&] {
        last.send(QByteArrayLiteral(R"({"cmd":"VERSION_CHECK"})"));
        receiving.sendChunk("abc");
        spinOnce();
        QVERIFY(
            waitUntil([&] { return first.socket().state() == QAbstractSocket::UnconnectedState; }));
    });
    printer.destroyServer();
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
    QVERIFY(waitUntil([&] { return last.socket().state() == QAbstractSocket::UnconnectedState; }));
}

void TestDestruction::losesPeersWhileItIsDestroyed()
{
    TestPrinter printer;
    RawTcpPeer receiving(printer.port());
    std::vector<std::unique_ptr<RawTcpPeer>> others;
    for (int i = 0; i < 5; ++i)
        others.push_back(std::make_unique<RawTcpPeer>(printer.port()));
    receiving.write(startFileFrame());
    QVERIFY(!receiving.takeText().isNull());
    QVERIFY(printer.waitForConnections(6));
    printer.host().during(QStringLiteral("fileTranDisconnet"), [&] {
        for (const auto &other : others)
            other->reset();
        receiving.reset();
        spinOnce();
    });
    printer.destroyServer();
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
    QVERIFY(!printer.server());
}

void TestDestruction::isDeletedWithMessagesWaiting()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    printer.host().during(QStringLiteral("sigDoPrintPause"), [&] { printer.destroyServer(); });
    // One segment, so that the server has all of them before it handles the first.
    QByteArray burst;
    for (int i = 0; i < 50; ++i)
        burst += commandFrame("PRINT_PAUSE");
    peer.write(burst);
    QVERIFY(waitUntil([&] { return peer.isEnded(); }));
    QCOMPARE(printer.host().calls().size(), 1);
    QCOMPARE(peer.texts(), QStringList());
}

void TestDestruction::dropsMessagesThatWaitForAConnectionItHasEnded()
{
    TestPrinter printer;
    RawTcpPeer talking(printer.port());
    QVERIFY(printer.waitForConnections(1));
    RawTcpPeer receiving(printer.port());
    receiving.write(startFileFrame());
    QVERIFY(!receiving.takeText().isNull());
    printer.host().during(QStringLiteral("sigDoPrintPause"), [&] { printer.destroyServer(); });
    // By then the talking peer's connection is gone, and some of its messages still wait.
    printer.host().during(QStringLiteral("fileTranDisconnet"), spinOnce);
    talking.write(commandFrame("PRINT_PAUSE") + commandFrame("PRINT_STOP")
                  + commandFrame("VERSION_CHECK"));
    QVERIFY(waitUntil([&] { return talking.isEnded() && receiving.isEnded(); }));
    QCOMPARE(printer.host().calls().mid(2),
             QStringList(
                 {QStringLiteral("sigDoPrintPause(0, )"), QStringLiteral("fileTranDisconnet()")}));
}

void TestDestruction::endsEachConnectionOnce()
{
    TestPrinter printer;
    RawTcpPeer receiving(printer.port());
    QVERIFY(printer.waitForConnections(1));
    RawTcpPeer leaving(printer.port());
    receiving.write(startFileFrame());
    QVERIFY(!receiving.takeText().isNull());
    QVERIFY(printer.waitForConnections(2));
    LogCapture log;
    printer.host().during(QStringLiteral("sigDoPrintPause"), [&] { printer.destroyServer(); });
    printer.host().during(QStringLiteral("fileTranDisconnet"), spinOnce);
    // One segment, so that the disconnect waits after the message, and is handled while the
    // destructor is busy with the other connection.
    leaving.write(commandFrame("PRINT_PAUSE") + RawTcpPeer::frame(RawTcpPeer::Close, {}));
    QVERIFY(waitUntil([&] { return leaving.isEnded() && receiving.isEnded(); }));
    QCOMPARE(log.texts(QStringLiteral("zywebsocket.server"))
                 .filter(QRegularExpression(QStringLiteral("^(~|Client disconnected)$"))),
             QStringList({QStringLiteral("~"), QStringLiteral("Client disconnected"),
                          QStringLiteral("Client disconnected")}));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
}

ZY_TEST(TestDestruction)
#include "tst_destruction.moc"
