// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Hosts whose slots spin the event loop: a message box in a slot must not stop the conversation.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestNestedLoops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSlotMayWaitForTheNextReply();
    void aConnectedSlotMayWaitForAReply();
    void aProgressSlotMayWaitForAStatus();
    void sendsNothingWhileAProgressSlotSpins();
    void aSlotMaySpinWhileThePeerEnds_data();
    void aSlotMaySpinWhileThePeerEnds();
    void aConnectedSlotMaySpinWhileThePeerEnds_data();
    void aConnectedSlotMaySpinWhileThePeerEnds();
    void aSlotMayCloseAndOpenAgain();
};

namespace
{

void addEndings()
{
    QTest::addColumn<bool>("isClosed");
    QTest::newRow("closed") << true;
    QTest::newRow("dropped") << false;
}

template <typename Printer> void endPeer(Printer &printer, bool isClosed)
{
    if (isClosed)
        printer.close();
    else
        printer.drop();
}

} // namespace

void TestNestedLoops::aSlotMayWaitForTheNextReply()
{
    Session session;
    QVERIFY(session.open());
    bool hasCome = false;
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        session.client.getPrintStatusCmd("t"_s);
        hasCome
            = zytest::waitUntil([&] { return session.trace.count("getPrinterStatusInfo"_s) == 1; });
    });
    connect(&session.printer, &ScriptedPrinter::textReceived, this,
            [&] { session.printer.sendText(R"({"cmd":"GET_PRINT_STATUS"})"_s); });

    session.printer.sendText(R"({"version":"1"})"_s);

    WAIT_COMPARE(session.trace.names(),
                 (QStringList{"checkVersion"_s, "getPrinterStatusInfo"_s, "jsonMessageReceived"_s,
                              "jsonMessageReceived"_s}));
    QVERIFY(hasCome);
    QVERIFY(session.trace.lines().constLast().contains("version"_s));
}

void TestNestedLoops::aConnectedSlotMayWaitForAReply()
{
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, this,
            [&] { printer.sendText(R"({"version":"1"})"_s); });
    ZySslEchoClient client(printer.url());
    int versions = 0;
    connect(&client, &ZySslEchoClient::checkVersion, this, [&] { ++versions; });
    bool hasCome = false;
    connect(&client, &ZySslEchoClient::connected, this, [&] {
        client.versionCheckCmd();
        hasCome = zytest::waitUntil([&] { return versions == 1; });
    });

    WAIT_VERIFY(hasCome);
}

void TestNestedLoops::aProgressSlotMayWaitForAStatus()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    bool hasCome = false;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        session.printer.sendText(R"({"cmd":"GET_PRINT_STATUS"})"_s);
        hasCome
            = zytest::waitUntil([&] { return session.trace.count("getPrinterStatusInfo"_s) == 1; });
    });

    session.client.sendFile(session.writeFile("local.zydlp"_s, "0123456789"), "m"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    QVERIFY(hasCome);
}

void TestNestedLoops::sendsNothingWhileAProgressSlotSpins()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    int chunksTooEarly = 0;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        // The loop that sends lies below this slot, so nothing is sent before it returns.
        zytest::spinOnce();
        chunksTooEarly
            += int(session.printer.chunks().size()) - session.trace.count("fileTransProgress"_s);
    });
    const QByteArray contents = zytest::compressibleBytes(3 * zytest::chunkBytes);

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    QCOMPARE(chunksTooEarly, 0);
    QCOMPARE(session.printer.chunks().size(), 3);
}

void TestNestedLoops::aSlotMaySpinWhileThePeerEnds_data()
{
    addEndings();
}

void TestNestedLoops::aSlotMaySpinWhileThePeerEnds()
{
    QFETCH(bool, isClosed);
    Session session;
    QVERIFY(session.open());
    bool hasEnded = false;
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        endPeer(session.printer, isClosed);
        hasEnded = zytest::waitUntil([&] { return session.trace.count("disconnected"_s) == 1; });
    });

    session.printer.sendText(R"({"version":"1"})"_s);

    WAIT_COMPARE(session.trace.names(),
                 (QStringList{"checkVersion"_s, "disconnected"_s, "jsonMessageReceived"_s}));
    QVERIFY(hasEnded);
}

void TestNestedLoops::aConnectedSlotMaySpinWhileThePeerEnds_data()
{
    addEndings();
}

void TestNestedLoops::aConnectedSlotMaySpinWhileThePeerEnds()
{
    QFETCH(bool, isClosed);
    Session session;
    connect(&session.client, &ZySslEchoClient::connected, this, [&] {
        if (session.printer.connectionCount() > 1)
            return;
        zytest::waitUntil([&] { return session.printer.peer() != nullptr; });
        endPeer(session.printer, isClosed);
        zytest::waitUntil([&] { return session.printer.peer() == nullptr; }, 100);
        zytest::spinOnce();
    });

    WAIT_COMPARE(session.trace.names(), (QStringList{"connected"_s, "disconnected"_s}));

    session.client.openWithUrl(session.printer.url());
    WAIT_COMPARE(session.trace.count("connected"_s), 2);
    WAIT_VERIFY(session.printer.peer());
    session.printer.sendText("{}"_s);
    WAIT_COMPARE(session.trace.lines().constLast(), "jsonMessageReceived({})"_s);
}

void TestNestedLoops::aSlotMayCloseAndOpenAgain()
{
    Session session;
    QVERIFY(session.open());
    bool isOpenAgain = false;
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        session.client.close();
        session.client.openWithUrl(session.printer.url());
        isOpenAgain = zytest::waitUntil([&] {
            return session.trace.count("connected"_s) == 1
                && session.printer.connectionCount() == 2;
        });
    });

    session.printer.sendText(R"({"version":"1"})"_s);

    WAIT_COMPARE(
        session.trace.names(),
        (QStringList{"checkVersion"_s, "pauseSuccess"_s, "connected"_s, "jsonMessageReceived"_s}));
    QVERIFY(isOpenAgain);
    session.printer.sendText("{}"_s);
    WAIT_COMPARE(session.trace.lines().constLast(), "jsonMessageReceived({})"_s);
}

ZY_TEST(TestNestedLoops)

#include "tst_nestedloops.moc"
