// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Ends that the application wants: cancel and leave.

#include "scriptedprinter.h"
#include "sending.h"
#include "testprinter.h"
#include "testprogram.h"

using namespace zytest;
using Ending = ZySendResult::Ending;

class TestSenderCancelAndLeave : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cancelsOnThePrinter();
    void cancelsBeforeThePrinterHasAnswered();
    void endsWhenThePrinterDoesNotConfirmTheCancel();
    void cancelsWhilePausing();
    void leavesInsteadOfDeletingACompleteFile_data();
    void leavesInsteadOfDeletingACompleteFile();
    void leavesThePartForLater();
    void ignoresWhatComesBeforeTheStart();
};

void TestSenderCancelAndLeave::cancelsOnThePrinter()
{
    TestPrinter printer;
    Sending sending(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port())),
                    randomBytes(20 * chunkBytes));
    connect(sending.sender.get(), &ZyFileSender::progress, this, [&] {
        if (sending.progress.count() == 2) {
            QVERIFY(sending.sender->canCancel());
            sending.sender->cancel();
        }
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::Cancelled);
    QVERIFY(sending.result().isPartDeleted());
    QVERIFY(waitUntil([&] { return entriesOf(printer.dir()).isEmpty(); }));
    QVERIFY(!sending.sender->canCancel());
    QVERIFY(sending.progress.count() < 20);
}

void TestSenderCancelAndLeave::cancelsBeforeThePrinterHasAnswered()
{
    ScriptedPrinter printer;
    Sending sending(printer.url(), "abc"); // its one chunk is not under way yet
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        if (text.contains(QStringLiteral("START_FILE")))
            sending.sender->cancel();
        else
            printer.send(cancelFileReply());
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::Cancelled);
    QVERIFY(sending.result().isPartDeleted());
    QCOMPARE(printer.chunks().size(), 0);
}

void TestSenderCancelAndLeave::endsWhenThePrinterDoesNotConfirmTheCancel()
{
    ScriptedPrinter printer;
    ZySendOptions options = impatient();
    options.setCancelTimeout(50);
    Sending sending(printer.url(), "abc", options);
    connect(sending.sender.get(), &ZyFileSender::offered, sending.sender.get(),
            &ZyFileSender::cancel);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::Cancelled);
    QVERIFY(!sending.result().isPartDeleted());
}

void TestSenderCancelAndLeave::cancelsWhilePausing()
{
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, &printer, &ScriptedPrinter::drop);
    ZySendOptions options = impatient();
    options.setFirstPause(patience);
    options.setLongestPause(patience);
    Sending sending(printer.url(), "abc", options);
    connect(sending.sender.get(), &ZyFileSender::retrying, sending.sender.get(),
            &ZyFileSender::cancel);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::Cancelled);
    QVERIFY(!sending.result().isPartDeleted());
}

void TestSenderCancelAndLeave::leavesInsteadOfDeletingACompleteFile_data()
{
    QTest::addColumn<bool>("isAcknowledged");
    QTest::newRow("the last chunk is under way") << false;
    QTest::newRow("the verdict is awaited") << true;
}

void TestSenderCancelAndLeave::leavesInsteadOfDeletingACompleteFile()
{
    QFETCH(bool, isAcknowledged);
    ScriptedPrinter printer;
    printer.answerTransfers({true, 0, 1, false});
    Sending sending(printer.url(), "abc");
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        if (isAcknowledged)
            printer.send(startDataReply(offeredKey(printer), 3, 3));
        else
            sending.sender->cancel();
    });
    connect(sending.sender.get(), &ZyFileSender::progress, this, [&] {
        QVERIFY(!sending.sender->canCancel());
        sending.sender->cancel();
    });
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::LeftForLater);
    QCOMPARE(printer.messages(QStringLiteral("CANCEL_FILE")).size(), 0);
}

void TestSenderCancelAndLeave::leavesThePartForLater()
{
    TestPrinter printer;
    Sending sending(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port())),
                    randomBytes(20 * chunkBytes));
    connect(sending.sender.get(), &ZyFileSender::progress, sending.sender.get(),
            &ZyFileSender::leave);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::LeftForLater);
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(entriesOf(printer.dir()), QStringList{QStringLiteral("wifi_tranfer.tmp")});
}

void TestSenderCancelAndLeave::ignoresWhatComesBeforeTheStart()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), "abc");
    sending.sender->cancel();
    sending.sender->leave();
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
}

ZY_TEST(TestSenderCancelAndLeave)
#include "tst_cancelandleave.moc"
