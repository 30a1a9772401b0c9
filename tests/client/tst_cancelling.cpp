// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Ending a transfer from the slicer's side: cancel() and close(), in every state.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QTimer>

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestCancelling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cancelsWhileAChunkIsUnacknowledged();
    void cancelsInsideAProgressSlot();
    void sendsAgainAfterACancel();
    void cancelsBeforeTheReplyTwice();
    void cancelsNothingHarmlessly();
    void closesDuringATransfer();

    void aRefusedCancelEndsTheNextTransfer();
    void anUnansweredCancelEndsTheNextTransfer();
    void cancelOpensTheConnectionAgain();
    void cancelsOnTheNextConnectionOnceAcknowledged();
};

namespace
{

TransferRules silent()
{
    TransferRules rules;
    rules.acknowledges = false;
    return rules;
}

int cancelsSeen(const Session &session)
{
    return int(session.printer.messages("CANCEL_FILE"_s).size());
}

int cancelsReported(const Session &session)
{
    return session.trace.count("cancelFinished"_s);
}

QString aFile(Session &session)
{
    return session.writeFile("local.zydlp"_s, zytest::compressibleBytes(3 * zytest::chunkBytes));
}

/// A whole transfer: true when it went through as if nothing had been before.
bool transferWorks(Session &session)
{
    session.printer.answerTransfers();
    const auto chunksBefore = session.printer.chunks().size();
    const int cancelsBefore = cancelsSeen(session);
    session.trace.clear();
    session.client.sendFile(aFile(session), "again.zydlp"_s);
    return zytest::waitUntil([&] {
        return session.hasEnded() && session.trace.count("finish"_s) == 1
            && session.printer.chunks().size() == chunksBefore + 3
            && cancelsSeen(session) == cancelsBefore;
    });
}

} // namespace

void TestCancelling::cancelsWhileAChunkIsUnacknowledged()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers(silent());
    connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client,
            [&] { session.client.cancel(); });

    session.client.sendFile(aFile(session), "m"_s);

    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 1);
    QCOMPARE(cancelsSeen(session), 1);
    QCOMPARE(session.printer.texts().constLast(), R"({"cmd":"CANCEL_FILE"})"_s);
    QCOMPARE(session.printer.chunks().size(), 1);
    QCOMPARE(session.logLines().constLast(), "send end"_s);
    QCOMPARE(session.logLines().size(), 4);
    QCOMPARE(session.trace.lines().size(), 3);
}

void TestCancelling::cancelsInsideAProgressSlot()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this,
            [&](const QString &, qlonglong, qlonglong received) {
                if (received == 2 * zytest::chunkBytes)
                    session.client.cancel();
            });

    session.client.sendFile(aFile(session), "m"_s);

    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 1);
    QCOMPARE(cancelsSeen(session), 1);
    QCOMPARE(session.printer.chunks().size(), 2);
    QCOMPARE(session.trace.count("finish"_s), 0);
}

void TestCancelling::sendsAgainAfterACancel()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers(silent());
    const auto cancelling = connect(&session.printer, &ScriptedPrinter::chunkReceived,
                                    &session.client, [&] { session.client.cancel(); });
    session.client.sendFile(aFile(session), "m"_s);
    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 1);
    disconnect(cancelling);

    QVERIFY(transferWorks(session));
}

void TestCancelling::cancelsBeforeTheReplyTwice()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();

    session.client.sendFile(aFile(session), "m"_s);
    session.client.cancel();

    // Once at once, and once in place of the first chunk.
    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 2);
    QCOMPARE(cancelsSeen(session), 2);
    QCOMPARE(session.printer.chunks().size(), 0);
    QCOMPARE(session.logLines(),
             (QStringList{"start send"_s, "_totalBytes =  3145728"_s, "send end"_s}));
    QVERIFY(transferWorks(session));
}

void TestCancelling::cancelsNothingHarmlessly()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();

    session.client.cancel();

    WAIT_COMPARE(session.trace.names(), (QStringList{"cancelFinished"_s, "jsonMessageReceived"_s}));
    QCOMPARE(cancelsSeen(session), 1);
    QVERIFY(transferWorks(session));
}

void TestCancelling::closesDuringATransfer()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers(silent());
    QStringList logInsideClose;
    const auto closing
        = connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client, [&] {
              session.client.close();
              logInsideClose = session.logLines();
          });

    session.client.sendFile(aFile(session), "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(session.trace.names(), (QStringList{"pauseSuccess"_s, "jsonMessageReceived"_s}));
    QCOMPARE(session.printer.chunks().size(), 1);
    QCOMPARE(cancelsSeen(session), 0);
    QVERIFY(!logInsideClose.contains("send end"_s));
    QCOMPARE(session.logLines().constLast(), "send end"_s);

    disconnect(closing);
    session.client.openWithUrl(session.printer.url());
    WAIT_COMPARE(session.printer.connectionCount(), 2);
    WAIT_COMPARE(session.trace.count("connected"_s), 1);
    QVERIFY(transferWorks(session));
}

void TestCancelling::aRefusedCancelEndsTheNextTransfer()
{
    Session session;
    QVERIFY(session.open());
    session.client.cancel();
    WAIT_COMPARE(cancelsSeen(session), 1);
    session.printer.sendText(R"({"cmd":"CANCEL_FILE","errorcode":3})"_s);
    WAIT_COMPARE(session.trace.names(), QStringList{"jsonMessageReceived"_s});

    session.printer.answerTransfers();
    session.client.sendFile(aFile(session), "m"_s);

    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 1);
    QCOMPARE(cancelsSeen(session), 2);
    QCOMPARE(session.printer.chunks().size(), 0);
    QVERIFY(transferWorks(session));
}

void TestCancelling::anUnansweredCancelEndsTheNextTransfer()
{
    Session session;
    QVERIFY(session.open());
    session.client.cancel();
    WAIT_COMPARE(cancelsSeen(session), 1);

    session.printer.answerTransfers();
    session.client.sendFile(aFile(session), "m"_s);

    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 1);
    QCOMPARE(cancelsSeen(session), 2);
    QCOMPARE(session.printer.chunks().size(), 0);
}

void TestCancelling::cancelOpensTheConnectionAgain()
{
    ScriptedPrinter other;
    Session session;
    QVERIFY(session.open());
    session.client.openWithUrl(other.url());
    WAIT_COMPARE(session.trace.count("connected"_s), 1);
    WAIT_COMPARE(other.connectionCount(), 1);
    other.drop();
    WAIT_COMPARE(session.trace.count("disconnected"_s), 1);
    QCOMPARE(session.client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    session.trace.clear();

    session.client.cancel();

    // The URL opened last, and no message.
    WAIT_COMPARE(session.trace.lines(), QStringList{"connected()"_s});
    WAIT_COMPARE(other.connectionCount(), 2);
    session.client.versionCheckCmd();
    WAIT_COMPARE(other.texts(), QStringList{R"({"cmd":"VERSION_CHECK"})"_s});
    QCOMPARE(session.printer.connectionCount(), 1);
}

void TestCancelling::cancelsOnTheNextConnectionOnceAcknowledged()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers(silent());
    connect(&session.printer, &ScriptedPrinter::chunkReceived, this,
            [&] { session.printer.drop(); });
    connect(&session.client, &ZySslEchoClient::disconnected, this,
            [&] { QTimer::singleShot(0, &session.client, &ZySslEchoClient::cancel); });
    connect(&session.printer, &ScriptedPrinter::peerConnected, this, [&] {
        session.printer.send(zytest::startDataReply("0"_s, 3 * zytest::chunkBytes, 0));
    });

    session.client.sendFile(aFile(session), "m"_s);

    WAIT_VERIFY(session.hasEnded() && cancelsReported(session) == 1);
    QCOMPARE(session.printer.connectionCount(), 2);
    QCOMPARE(cancelsSeen(session), 1);
    QCOMPARE(session.printer.chunks().size(), 1);
    QCOMPARE(session.trace.count("disconnected"_s), 1);
}

ZY_TEST(TestCancelling)

#include "tst_cancelling.moc"
