// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Host slots that spin the event loop while peers leave or ask for more.

#include "endings.h"
#include "hostsignals.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

using namespace zytest;

Q_DECLARE_METATYPE(zytest::HostSignal)

namespace
{

const QString modelName = QStringLiteral("a.txt");
const QString cancelReply
    = QStringLiteral(R"({"cmd":"CANCEL_FILE","errorcode":0,"filename":"job"})");

/// True when a whole transfer works, so nothing that happened before has done damage.
bool transfersAFile(RawPeer &peer)
{
    peer.send(startFile(QStringLiteral("after.txt"), 5, QStringLiteral("2f6e6577")));
    if (peer.take().value(QStringLiteral("offset")) != QJsonValue(QStringLiteral("0")))
        return false;
    peer.sendChunk("after");
    return peer.take() == startData(5, 5, 0, QStringLiteral("2f6e6577"))
        && peer.take() == checkData(1, QStringLiteral("2f6e6577")) && peer.expectNothing();
}

} // namespace

class TestSpinningHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersAnotherPeerInside_data();
    void answersAnotherPeerInside();
    void answersBehindASpinningSlot_data();
    void answersBehindASpinningSlot();

    void stopsSilentlyWhenThePeerHasLeft_data();
    void stopsSilentlyWhenThePeerHasLeft();
    void survivesTwoPeersLeavingInsideNestedSlots_data();
    void survivesTwoPeersLeavingInsideNestedSlots();
    void answersAStartFileInside_data();
    void answersAStartFileInside();
    void savesTheRecordOnceWhenTheHostSpins();
    void keepsTheFinishedFileWhenThePeerLeavesDuringItsCheck();
    void dropsTheOutcomeOfACheckForAPeerThatLeft();
    void survivesThePeerWhoseDataCompletedTheFile();
    void survivesTheReceiverWhoseFileAnotherCompleted();
    void ignoresASecondDisconnectOfTheSameConnection();
};

static void addSignals()
{
    QTest::addColumn<HostSignal>("signal");
    const QList<HostSignal> all = hostSignals();
    for (const HostSignal &signal : all) {
        if (!signal.needsEnding)
            QTest::newRow(signal.name) << signal;
    }
}

void TestSpinningHost::answersAnotherPeerInside_data()
{
    addSignals();
}

void TestSpinningHost::answersAnotherPeerInside()
{
    QFETCH(HostSignal, signal);
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    RawPeer other(printer.port());
    const QString name = QString::fromLatin1(signal.name);
    QJsonObject inside;
    printer.host().during(name, [&] {
        printer.host().during(name, {});
        inside = other.ask(R"({"cmd":"PRINT_PAUSE","token":"t"})");
    });
    for (const QByteArray &frame : std::as_const(signal.frames))
        peer.write(frame);
    QVERIFY(waitUntil([&] { return !inside.isEmpty(); }));
    QCOMPARE(inside, json(R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})"));
    QVERIFY(other.expectNothing());
}

void TestSpinningHost::answersBehindASpinningSlot_data()
{
    addSignals();
}

void TestSpinningHost::answersBehindASpinningSlot()
{
    QFETCH(HostSignal, signal);
    // What the peer gets when the host does not spin…
    QStringList plain;
    {
        TestPrinter printer;
        RawTcpPeer peer(printer.port());
        for (const QByteArray &frame : std::as_const(signal.frames))
            peer.write(frame);
        peer.write(commandFrame("CANCEL_FILE"));
        do {
            plain.append(peer.takeText());
        } while (plain.last() != cancelReply && !plain.last().isNull());
    }
    // … it gets in the same order when it does.
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    RawPeer other(printer.port());
    const QString name = QString::fromLatin1(signal.name);
    bool isOver = false;
    printer.host().during(name, [&] {
        printer.host().during(name, {});
        isOver = other.expectNothing();
    });
    for (const QByteArray &frame : std::as_const(signal.frames))
        peer.write(frame);
    QVERIFY(waitUntil([&] { return isOver; }));
    peer.write(commandFrame("CANCEL_FILE"));
    for (const QString &text : std::as_const(plain))
        QCOMPARE(peer.takeText(), text);
}

void TestSpinningHost::stopsSilentlyWhenThePeerHasLeft_data()
{
    QTest::addColumn<HostSignal>("signal");
    QTest::addColumn<Ending>("ending");
    const QList<HostSignal> all = hostSignals();
    for (const HostSignal &signal : all) {
        QTest::addRow("%s, close frame", signal.name) << signal << OrderlyClose;
        QTest::addRow("%s, end of TCP", signal.name) << signal << TcpEnd;
        QTest::addRow("%s, TCP reset", signal.name) << signal << TcpReset;
    }
}

void TestSpinningHost::stopsSilentlyWhenThePeerHasLeft()
{
    QFETCH(HostSignal, signal);
    QFETCH(Ending, ending);
    TestPrinter printer;
    RawPeer other(printer.port());
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(2));
    bool isOver = false;
    const QString name = QString::fromLatin1(signal.name);
    printer.host().during(name, [&] {
        printer.host().during(name, {});
        if (signal.needsEnding) {
            other.expectNothing();
        } else {
            end(peer, ending);
            // Until the handle and its socket are deleted, not only off the registry.
            QVERIFY(printer.waitForConnections(1));
        }
        isOver = true;
    });
    QVERIFY(provoke(signal, peer, ending));
    QVERIFY(waitUntil([&] { return isOver; }));
    QVERIFY(printer.waitForConnections(1));
    printer.host().takeCalls();
    QVERIFY(transfersAFile(other));
    // Nothing of the peer that left is still going on.
    QCOMPARE(printer.host().takeCalls(),
             QStringList({QStringLiteral("getPrintState(0, , false)"),
                          QStringLiteral("fileTranStart()"), QStringLiteral("finish(after.txt, 0)"),
                          QStringLiteral("sifGetVersionCheck()")}));
}

void TestSpinningHost::survivesTwoPeersLeavingInsideNestedSlots_data()
{
    addSignals();
}

void TestSpinningHost::survivesTwoPeersLeavingInsideNestedSlots()
{
    QFETCH(HostSignal, signal);
    TestPrinter printer;
    RawPeer other(printer.port());
    RawTcpPeer outer(printer.port());
    RawTcpPeer inner(printer.port());
    QVERIFY(printer.waitForConnections(3));
    bool isOver = false;
    printer.host().during(QStringLiteral("sigDoPrintStop"), [&] {
        // The outer peer's message is two loops up the stack.
        outer.reset();
        inner.reset();
        QVERIFY(printer.waitForConnections(1));
        isOver = true;
    });
    const QString name = QString::fromLatin1(signal.name);
    if (name != QStringLiteral("sigDoPrintStop")) {
        printer.host().during(name, [&] {
            printer.host().during(name, {});
            inner.write(commandFrame("PRINT_STOP"));
            QVERIFY(waitUntil([&] { return isOver; }));
        });
    }
    for (const QByteArray &frame : std::as_const(signal.frames))
        outer.write(frame);
    QVERIFY(waitUntil([&] { return isOver; }));
    QVERIFY(transfersAFile(other));
}

void TestSpinningHost::answersAStartFileInside_data()
{
    QTest::addColumn<HostSignal>("signal");
    QTest::addColumn<bool>("isAccepted");
    const QList<HostSignal> all = hostSignals();
    for (const HostSignal &signal : all) {
        // Refused while the host checks a finished file, a print file, or keeps an interrupted
        // reception from ending.
        const QByteArray name(signal.name);
        QTest::newRow(signal.name)
            << signal << (name != "finish" && name != "checkFile" && name != "fileTranDisconnet");
    }
}

void TestSpinningHost::answersAStartFileInside()
{
    QFETCH(HostSignal, signal);
    QFETCH(bool, isAccepted);
    TestPrinter printer;
    RawPeer other(printer.port());
    RawTcpPeer peer(printer.port());
    const QString name = QString::fromLatin1(signal.name);
    QJsonObject reply;
    printer.host().during(name, [&] {
        printer.host().during(name, {});
        other.send(startFile(modelName, 5));
        reply = other.take();
    });
    QVERIFY(provoke(signal, peer));
    QVERIFY(waitUntil([&] { return !reply.isEmpty(); }));
    if (!isAccepted) {
        QCOMPARE(reply, refusal(1, name == QStringLiteral("checkFile") ? 4 : 3));
        return;
    }
    QCOMPARE(reply.value(QStringLiteral("offset")), QJsonValue(QStringLiteral("0")));
    QVERIFY(other.expectNothing());
    if (name == QStringLiteral("getPrintState")) {
        // The later request has won, and the earlier one is refused.
        QCOMPARE(json(peer.takeText().toUtf8()), refusal(1, 3));
    }
}

void TestSpinningHost::savesTheRecordOnceWhenTheHostSpins()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    RawPeer other(printer.port());
    printer.host().during(QStringLiteral("fileTranDisconnet"), [&] {
        other.expectNothing();
        spinOnce();
    });
    peer.write(startFileFrame("6"));
    peer.write(chunkFrame("abc"));
    QVERIFY(!peer.takeText().isNull());
    QVERIFY(!peer.takeText().isNull());
    peer.reset();
    QVERIFY(printer.waitForConnections(1));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
    const QByteArray left = readFile(printer.temporaryFile());
    QCOMPARE(left.size(), 6 + 8 + 8 + 4 + 10 + 4 + 16);
    QCOMPARE(left.left(6), QByteArray("abc\0\0\0", 6));
    other.send(startFile(modelName, 6));
    QCOMPARE(other.take().value(QStringLiteral("offset")), QJsonValue(QStringLiteral("3")));
}

void TestSpinningHost::keepsTheFinishedFileWhenThePeerLeavesDuringItsCheck()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    printer.host().during(QStringLiteral("finish"), [&] {
        peer.reset();
        QVERIFY(printer.waitForConnections(0));
    });
    peer.write(startFileFrame());
    peer.write(chunkFrame("abcde"));
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcde"));
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
}

void TestSpinningHost::dropsTheOutcomeOfACheckForAPeerThatLeft()
{
    TestPrinter printer;
    RawPeer other(printer.port());
    RawTcpPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(2));
    bool isOver = false;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        printer.host().during(QStringLiteral("checkFile"), {});
        peer.reset();
        QVERIFY(printer.waitForConnections(1));
        isOver = true;
    });
    peer.write(commandFrame("START_PRINT"));
    QVERIFY(waitUntil([&] { return isOver; }));
    QVERIFY(other.expectNothing());
    // The check died with its connection, so the next print is not busy.
    QCOMPARE(other.ask(R"({"cmd":"START_PRINT","filename":"job"})"),
             printStart(QStringLiteral("CHECKING"), QStringLiteral("job")));
    QCOMPARE(other.take(), printStart(QStringLiteral("STARTED"), QStringLiteral("job")));
}

void TestSpinningHost::survivesThePeerWhoseDataCompletedTheFile()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    RawTcpPeer sending(printer.port());
    receiving.send(startFile(modelName, 5));
    receiving.take();
    printer.host().during(QStringLiteral("finish"), [&] {
        sending.reset();
        QVERIFY(printer.waitForConnections(1));
    });
    sending.write(chunkFrame("abcde"));
    QVERIFY(printer.waitForConnections(1));
    printer.host().during(QStringLiteral("finish"), {});
    QVERIFY(receiving.expectNothing());
    QCOMPARE(printer.lastStatus(), 0);
    QVERIFY(transfersAFile(receiving));
}

void TestSpinningHost::survivesTheReceiverWhoseFileAnotherCompleted()
{
    TestPrinter printer;
    RawPeer sending(printer.port());
    RawTcpPeer receiving(printer.port());
    receiving.write(startFileFrame());
    QVERIFY(!receiving.takeText().isNull());
    printer.host().during(QStringLiteral("finish"), [&] {
        printer.host().during(QStringLiteral("finish"), {});
        receiving.reset();
        QVERIFY(printer.waitForConnections(1));
    });
    sending.sendChunk("abcde");
    QCOMPARE(sending.take(), startData(5, 5));
    QVERIFY(printer.waitForConnections(1));
    QVERIFY(transfersAFile(sending));
}

void TestSpinningHost::ignoresASecondDisconnectOfTheSameConnection()
{
    TestPrinter printer;
    RawPeer other(printer.port());
    RawTcpPeer peer(printer.port());
    peer.write(startFileFrame());
    QVERIFY(!peer.takeText().isNull());
    bool isOver = false;
    printer.host().during(QStringLiteral("fileTranDisconnet"), [&] {
        // A public slot, invoked for the connection that is just ending.
        printer.server()->socketDisconnected();
        isOver = other.expectNothing();
    });
    peer.reset();
    QVERIFY(waitUntil([&] { return isOver; }));
    QVERIFY(printer.waitForConnections(1));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
    QVERIFY(other.expectNothing());
}

ZY_TEST(TestSpinningHost)
#include "tst_spinninghost.moc"
