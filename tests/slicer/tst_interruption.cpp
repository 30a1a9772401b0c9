// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Users who interrupt zyslicer: the printer is told, and what it holds is not lost.

#include "bench.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "waiting.h"

#include <QTest>

using zytest::chunkBytes;
using zytest::CuttingProxy;

class TestInterruption : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cancelsOnThePrinterAtCtrlC();
    void leavesWhenACancelIsNotAcknowledged();
    void leavesAtCtrlCWhatThePrinterHoldsWhole();
    void leavesAtOnceAtTheSecondCtrlC();
    void leavesWhilePausingBeforeARetry();
    void stopsFollowingAtCtrlC();
    void tellsAtCtrlCWhatThePrinterWasAsked_data();
    void tellsAtCtrlCWhatThePrinterWasAsked();

private:
    QTemporaryDir m_directory;
    QByteArray m_bytes;
    QString m_file;
};

void TestInterruption::initTestCase()
{
    m_bytes = zytest::randomBytes(qint64(chunkBytes) * chunks + 12345);
    m_file = zytest::writeFile(m_directory.filePath("file.zydlp"_s), m_bytes);
}

void TestInterruption::cancelsOnThePrinterAtCtrlC()
{
    Bench bench;
    bench.proxy.setThroughput(4 * chunkBytes);
    SlicerProcess slicer(bench.send(m_file));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    slicer.interrupt();
    slicer.terminate(); // timeout(1) signals its child by itself and with its group
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "the printer has cancelled"), slicer.errors());
    QCOMPARE(bench.printer.host().count("cancle"_s), 1);
    QVERIFY(!QFile::exists(bench.printer.temporaryFile()));
}

void TestInterruption::leavesWhenACancelIsNotAcknowledged()
{
    Bench bench;
    SlicerProcess slicer(bench.send(m_file, {"--stall"_s, "3600"_s, "--timeout"_s, "0.5"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    bench.proxy.freeze();
    slicer.terminate();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "did not acknowledge the cancel"), slicer.errors());
}

void TestInterruption::leavesAtCtrlCWhatThePrinterHoldsWhole()
{
    Bench bench;
    // The printer has stored the file; whatever it answers does not get through.
    bench.printer.host().during("finish"_s, [&] { bench.proxy.freeze(); });
    SlicerProcess slicer(bench.send(m_file));
    QVERIFY(zytest::waitUntil([&] { return bench.printer.host().count("finish"_s) == 1; }));
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "the whole file"), slicer.errors());
    QCOMPARE(bench.printer.host().count("cancle"_s), 0);
    QVERIFY(bench.stored() == m_bytes);
}

void TestInterruption::leavesAtOnceAtTheSecondCtrlC()
{
    Bench bench;
    SlicerProcess slicer(bench.send(m_file, {"--stall"_s, "3600"_s, "--verbose"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    bench.proxy.freeze(); // nothing acknowledges the cancel
    slicer.interrupt();
    QVERIFY(zytest::waitUntil([&] { return slicer.errors().contains("cancelling"); }));
    QTest::qWait(notOneInterruption);
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(slicer.errors().contains("left without waiting"), slicer.errors());

    bench.proxy.cut(CuttingProxy::Ending::Reset);
    QVERIFY(bench.printer.waitForConnections(0));
    bench.proxy.thaw();
    const SlicerResult again = runSlicer(bench.send(m_file));
    QCOMPARE(again.exitCode, 0);
    QVERIFY(!eventsNamed("resumed"_s, again.output).isEmpty());
    QVERIFY(bench.stored() == m_bytes);
}

void TestInterruption::leavesWhilePausingBeforeARetry()
{
    Bench bench;
    bench.proxy.cutAfter(CuttingProxy::ToPrinter, chunkBytes * 2);
    QStringList arguments = bench.send(m_file);
    arguments[arguments.indexOf("--back-off"_s) + 1] = "20"_s;
    SlicerProcess slicer(arguments);
    QVERIFY(!slicer.waitForEvent("retrying"_s).isEmpty());
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "nothing was being sent"), slicer.errors());
}

void TestInterruption::stopsFollowingAtCtrlC()
{
    Bench bench;
    PrintStatusPara status;
    status.printStatus = 1;
    bench.printer.host().answers.status = status;
    SlicerProcess slicer(
        {"status"_s, "--to"_s, bench.proxy.url().toString(), "--watch"_s, "--json"_s});
    QVERIFY(!slicer.waitForEvent("status"_s).isEmpty());
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "the print goes on"), slicer.errors());
    QCOMPARE(bench.printer.host().count("sigDoPrintStop"_s), 0);
}

void TestInterruption::tellsAtCtrlCWhatThePrinterWasAsked_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("isConnected");
    QTest::addColumn<QByteArray>("part");
    const QByteArray nothing = "has been asked nothing";
    const QByteArray goesOn = "the printer goes on with what it was doing";
    QTest::newRow("connecting, status") << QStringList("status"_s) << false << goesOn;
    QTest::newRow("connecting, watch") << QStringList{"status"_s, "--watch"_s} << false << goesOn;
    QTest::newRow("connecting, stop") << QStringList("stop"_s) << false << nothing;
    QTest::newRow("connecting, print") << QStringList{"print"_s, "x"_s} << false << nothing;
    QTest::newRow("unanswered, stop")
        << QStringList("stop"_s) << true << QByteArray("may still do what it was asked");
}

void TestInterruption::tellsAtCtrlCWhatThePrinterWasAsked()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, isConnected);
    QFETCH(QByteArray, part);
    Bench bench;
    if (isConnected)
        bench.printer.host().during("sigDoPrintStop"_s, [&] { bench.proxy.freeze(); });
    else
        bench.proxy.freeze();
    SlicerProcess slicer(arguments + QStringList{"--to"_s, bench.proxy.url().toString()});
    QVERIFY(zytest::waitUntil([&] {
        return isConnected ? bench.printer.host().count("sigDoPrintStop"_s) == 1
                           : bench.proxy.connectionCount() == 1;
    }));
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), part), slicer.errors());
}

ZY_TEST(TestInterruption)

#include "tst_interruption.moc"
