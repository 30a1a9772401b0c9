// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Connections that drop, stall or crawl: what arrives is whole.

#include "bench.h"
#include "modelfiles.h"
#include "printerprocess.h"
#include "rawpeer.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"
#include "waiting.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>

using zytest::chunkBytes;
using zytest::CuttingProxy;
using zytest::RawPeer;
using zytest::readFile;

class TestRecovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void resumesWhatAKilledSenderLeft();
    void reconnectsAndResumesAfterACut_data();
    void reconnectsAndResumesAfterACut();
    void reconnectsAndResumesAfterAStall();
    void waitsOutASlowLink();
    void retriesWhileThePrinterStillHoldsTheLostConnection();
    void sendsAgainWhenTheVerdictIsLost();
    void tellsThatARetryBeginsAnew();
    void tellsALostPrinterInItsOwnWords();
    void followsAPrintOverACut();
    void countsAConnectionLostBeforeAnAnswerOnce();

private:
    QTemporaryDir m_directory;
    QByteArray m_bytes;
    QString m_file;
};

void TestRecovery::initTestCase()
{
    m_bytes = zytest::randomBytes(qint64(chunkBytes) * chunks + 12345);
    m_file = zytest::writeFile(m_directory.filePath("file.zydlp"_s), m_bytes);
}

void TestRecovery::resumesWhatAKilledSenderLeft()
{
    Bench bench;
    bench.proxy.setThroughput(4 * chunkBytes);
    {
        SlicerProcess slicer(bench.send(m_file));
        const auto isHalf
            = [&] { return slicer.output().contains(QByteArray::number(chunkBytes * chunks / 2)); };
        QVERIFY(zytest::waitUntil(isHalf));
        slicer.kill();
        QVERIFY(bench.printer.waitForConnections(0));
    }
    bench.proxy.setThroughput(0);
    const SlicerResult result = runSlicer(bench.send(m_file));
    QCOMPARE(result.exitCode, 0);
    const QJsonObject resumed = eventsNamed("resumed"_s, result.output).value(0);
    VERIFY_TEXT(resumed.value("offset"_s).toInt() >= chunkBytes * chunks / 2, result.output);
    QCOMPARE(resumed.value("total"_s).toInt(), m_bytes.size());
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::reconnectsAndResumesAfterACut_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 1; seed <= 20; ++seed)
        QTest::newRow(qPrintable("seed %1"_s.arg(seed))) << seed;
}

void TestRecovery::reconnectsAndResumesAfterACut()
{
    QFETCH(int, seed);
    QRandomGenerator random(static_cast<quint32>(seed));
    Bench bench;
    // Anywhere from the end of the handshake to the last byte, in either direction.
    const bool isToPrinter = random.bounded(4) != 0;
    const CuttingProxy::Ending ending
        = random.bounded(2) == 0 ? CuttingProxy::Ending::Close : CuttingProxy::Ending::Reset;
    if (isToPrinter)
        bench.proxy.cutAfter(CuttingProxy::ToPrinter, 1000 + random.bounded(m_bytes.size()),
                             ending);
    else
        bench.proxy.cutAfter(CuttingProxy::ToClient, 400 + random.bounded(600), ending);

    const SlicerResult result = runSlicer(bench.send(m_file));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(bench.proxy.cutCount(), 1);
    QCOMPARE(eventsNamed("retrying"_s, result.output).size(), 1);
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::reconnectsAndResumesAfterAStall()
{
    Bench bench;
    SlicerProcess slicer(bench.send(m_file, {"--stall"_s, "1"_s, "--retries"_s, "50"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    bench.proxy.freeze();
    const QJsonObject retry = slicer.waitForEvent("retrying"_s);
    QCOMPARE(retry.value("reason"_s).toString(), "no acknowledgement for 1 s"_s);
    bench.proxy.thaw();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 0);
    QVERIFY(!eventsNamed("resumed"_s, slicer.output()).isEmpty());
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::waitsOutASlowLink()
{
    Bench bench;
    bench.proxy.setThroughput(3 * chunkBytes);
    const SlicerResult result = runSlicer(bench.send(m_file, {"--stall"_s, "10"_s}));
    QCOMPARE(result.exitCode, 0);
    QVERIFY(eventsNamed("retrying"_s, result.output).isEmpty());
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::retriesWhileThePrinterStillHoldsTheLostConnection()
{
    Bench bench;
    SlicerProcess slicer(bench.send(m_file, {"--retries"_s, "1000"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    bench.proxy.freeze(); // the next connection does not get through yet
    bench.proxy.cut();
    QVERIFY(bench.printer.waitForConnections(0));
    // Stands for the connection that was cut, had the printer not noticed its end.
    RawPeer lost(bench.printer.port());
    QVERIFY(!lost.ask("{\"cmd\":\"START_FILE\",\"filename\":\"x\",\"key\":\"1\","
                      "\"offset\":\"0\",\"size\":\"1000\"}")
                 .isEmpty());
    bench.proxy.thaw();
    QVERIFY(slicer.waitForOutput("the printer is still receiving"));
    lost.abort();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.errors(), QByteArray());
    QCOMPARE(slicer.exitCode(), 0);
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::sendsAgainWhenTheVerdictIsLost()
{
    Bench bench;
    // The printer has stored the file, but its verdict does not get through.
    bench.printer.host().during("finish"_s, [&] {
        if (bench.printer.host().count("finish"_s) == 1)
            bench.proxy.freeze();
    });
    SlicerProcess slicer(bench.send(m_file, {"--check-timeout"_s, "1"_s, "--stall"_s, "5"_s}));
    QVERIFY(!slicer.waitForEvent("retrying"_s).isEmpty());
    bench.proxy.thaw();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 0);
    QCOMPARE(bench.printer.host().count("finish"_s), 2);
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::tellsThatARetryBeginsAnew()
{
    Bench bench;
    SlicerProcess slicer(bench.send(m_file, {"--retries"_s, "1000"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    bench.proxy.freeze();
    bench.proxy.cut();
    QVERIFY(bench.printer.waitForConnections(0));
    QVERIFY(QFile::remove(bench.printer.temporaryFile()));
    bench.proxy.thaw();
    const QJsonObject restarted = slicer.waitForEvent("restarted"_s);
    QCOMPARE(restarted.value("file"_s).toString(), "a.zydlp"_s);
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 0);
    QVERIFY(eventsNamed("resumed"_s, slicer.output()).isEmpty());
    QVERIFY(bench.stored() == m_bytes);
}

void TestRecovery::tellsALostPrinterInItsOwnWords()
{
    auto printer = std::make_unique<PrinterProcess>();
    const QString file = zytest::writeFile(m_directory.filePath("big.zydlp"_s),
                                           zytest::randomBytes(qint64(chunkBytes) * 80));
    SlicerProcess slicer(
        {"send"_s, file, "--to"_s, printer->url().toString(), "--retries"_s, "0"_s, "--json"_s});
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    printer.reset();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 11);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "given up after 1 attempts (connection lost)"),
                slicer.errors());
}

void TestRecovery::followsAPrintOverACut()
{
    Bench bench;
    PrintStatusPara status;
    status.printStatus = 1;
    status.filename = "a.zydlp"_s;
    bench.printer.host().answers.status = status;
    SlicerProcess slicer({"print"_s, "a.zydlp"_s, "--to"_s, bench.proxy.url().toString(),
                          "--watch"_s, "--interval"_s, "0.05"_s, "--back-off"_s, "0.05"_s,
                          "--json"_s});
    QVERIFY(!slicer.waitForEvent("status"_s).isEmpty());
    bench.proxy.cut();
    QVERIFY(!slicer.waitForEvent("retrying"_s).isEmpty());
    status.printStatus = 2;
    bench.printer.host().answers.status = status;
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.errors(), QByteArray());
    QCOMPARE(slicer.exitCode(), 0);
    QCOMPARE(bench.printer.host().count("checkFile"_s), 1);
}

void TestRecovery::countsAConnectionLostBeforeAnAnswerOnce()
{
    Bench bench;
    PrintStatusPara status;
    status.printStatus = 1;
    bench.printer.host().answers.status = status;
    bench.printer.host().during("sigGetPrinterStatus"_s, [&] {
        if (bench.printer.host().count("sigGetPrinterStatus"_s) != 2)
            return;
        bench.printer.host().answers.status->printStatus = 2;
        bench.proxy.cut();
    });
    const SlicerResult result = runSlicer({"status"_s, "--to"_s, bench.proxy.url().toString(),
                                           "--watch"_s, "--interval"_s, "0.05"_s, "--back-off"_s,
                                           "0.05"_s, "--retries"_s, "1"_s, "--json"_s});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(eventsNamed("retrying"_s, result.output).size(), 1);
}

ZY_TEST(TestRecovery)

#include "tst_recovery.moc"
