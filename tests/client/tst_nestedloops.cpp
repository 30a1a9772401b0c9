// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Hosts whose slots spin the event loop: a message box in a slot must not stop the conversation.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class NestedLoopsTest : public QObject
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

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

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

void NestedLoopsTest::aSlotMayWaitForTheNextReply()
{
    Session session;
    QVERIFY(session.open());
    bool hasCome = false;
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        session.client.getPrintStatusCmd(s("t"));
        hasCome = zytest::waitUntil(
            [&] { return session.trace.count(s("getPrinterStatusInfo")) == 1; });
    });
    connect(&session.printer, &ScriptedPrinter::textReceived, this,
            [&] { session.printer.sendText(s(R"({"cmd":"GET_PRINT_STATUS"})")); });

    session.printer.sendText(s(R"({"version":"1"})"));

    WAIT_COMPARE(session.trace.names(),
                 (QStringList{s("checkVersion"), s("getPrinterStatusInfo"),
                              s("jsonMessageReceived"), s("jsonMessageReceived")}));
    QVERIFY(hasCome);
    QVERIFY(session.trace.lines().constLast().contains(s("version")));
}

void NestedLoopsTest::aConnectedSlotMayWaitForAReply()
{
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, this,
            [&] { printer.sendText(s(R"({"version":"1"})")); });
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

void NestedLoopsTest::aProgressSlotMayWaitForAStatus()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    bool hasCome = false;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        session.printer.sendText(s(R"({"cmd":"GET_PRINT_STATUS"})"));
        hasCome = zytest::waitUntil(
            [&] { return session.trace.count(s("getPrinterStatusInfo")) == 1; });
    });

    session.client.sendFile(session.writeFile(s("local.zydlp"), "0123456789"), s("m"));

    WAIT_VERIFY(session.hasEnded() && session.trace.count(s("finish")) == 1);
    QVERIFY(hasCome);
}

void NestedLoopsTest::sendsNothingWhileAProgressSlotSpins()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    int chunksTooEarly = 0;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        // The loop that sends lies below this slot, so nothing is sent before it returns.
        zytest::spinOnce();
        chunksTooEarly
            += int(session.printer.chunks().size()) - session.trace.count(s("fileTransProgress"));
    });
    const QByteArray contents = zytest::compressibleBytes(3 * zytest::chunkBytes);

    session.client.sendFile(session.writeFile(s("local.zydlp"), contents), s("m"));

    WAIT_VERIFY(session.hasEnded() && session.trace.count(s("finish")) == 1);
    QCOMPARE(chunksTooEarly, 0);
    QCOMPARE(session.printer.chunks().size(), 3);
}

void NestedLoopsTest::aSlotMaySpinWhileThePeerEnds_data()
{
    addEndings();
}

void NestedLoopsTest::aSlotMaySpinWhileThePeerEnds()
{
    QFETCH(bool, isClosed);
    Session session;
    QVERIFY(session.open());
    bool hasEnded = false;
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        endPeer(session.printer, isClosed);
        hasEnded = zytest::waitUntil([&] { return session.trace.count(s("disconnected")) == 1; });
    });

    session.printer.sendText(s(R"({"version":"1"})"));

    WAIT_COMPARE(session.trace.names(),
                 (QStringList{s("checkVersion"), s("disconnected"), s("jsonMessageReceived")}));
    QVERIFY(hasEnded);
}

void NestedLoopsTest::aConnectedSlotMaySpinWhileThePeerEnds_data()
{
    addEndings();
}

void NestedLoopsTest::aConnectedSlotMaySpinWhileThePeerEnds()
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

    WAIT_COMPARE(session.trace.names(), (QStringList{s("connected"), s("disconnected")}));

    session.client.openWithUrl(session.printer.url());
    WAIT_COMPARE(session.trace.count(s("connected")), 2);
    WAIT_VERIFY(session.printer.peer());
    session.printer.sendText(s("{}"));
    WAIT_COMPARE(session.trace.lines().constLast(), s("jsonMessageReceived({})"));
}

void NestedLoopsTest::aSlotMayCloseAndOpenAgain()
{
    Session session;
    QVERIFY(session.open());
    bool isOpenAgain = false;
    connect(&session.client, &ZySslEchoClient::checkVersion, this, [&] {
        session.client.close();
        session.client.openWithUrl(session.printer.url());
        isOpenAgain = zytest::waitUntil([&] {
            return session.trace.count(s("connected")) == 1
                && session.printer.connectionCount() == 2;
        });
    });

    session.printer.sendText(s(R"({"version":"1"})"));

    WAIT_COMPARE(session.trace.names(),
                 (QStringList{s("checkVersion"), s("pauseSuccess"), s("connected"),
                              s("jsonMessageReceived")}));
    QVERIFY(isOpenAgain);
    session.printer.sendText(s("{}"));
    WAIT_COMPARE(session.trace.lines().constLast(), s("jsonMessageReceived({})"));
}

ZY_TEST(NestedLoopsTest)

#include "tst_nestedloops.moc"
