// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers that are busy, absent or silent, lines to share, and users who leave in between.

#include "cuttingproxy.h"
#include "modelfiles.h"
#include "printerprocess.h"
#include "rawpeer.h"
#include "slicerprocess.h"
#include "testprinter.h"
#include "testprogram.h"
#include "texts.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTest>

#include <memory>

using zytest::chunkBytes;
using zytest::CuttingProxy;
using zytest::RawPeer;
using zytest::TestPrinter;

class TestPatience : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void waitsForAPrinterThatIsNotThere();
    void waitsForAPrinterThatIsReceiving();
    void waitsForAPrintToEnd();
    void asksForAPrintNoMoreThanOnce();
    void waitsNoMoreAfterCtrlC();
    void endsAtCtrlCWhileItLooksWhyItWasRefused_data();
    void endsAtCtrlCWhileItLooksWhyItWasRefused();
    void showsThatATransferStalls();
    void answersCtrlCAtOnce();
    void readsALargeFileBeforeItIsSent();
    void keepsThePartWhenAskedTo();
    void leavesSomeOfTheLineToOthers();
    void refusesARateThatIsNone_data();
    void refusesARateThatIsNone();

private:
    QStringList send(const QString &file, const QString &url, const QStringList &more = {}) const
    {
        return QStringList{"send"_s, file, "--to"_s, url, "--interval"_s, "0.05"_s} + more;
    }

    QTemporaryDir m_directory;
    QString m_model;
    QString m_big;
};

void TestPatience::initTestCase()
{
    m_model = makeModel(m_directory.filePath("part.zydlp"_s));
    m_big = zytest::writeFile(m_directory.filePath("big.zydlp"_s),
                              zytest::randomBytes(qint64(chunkBytes) * 20));
}

void TestPatience::waitsForAPrinterThatIsNotThere()
{
    const QString url = deadUrl();
    SlicerProcess slicer(send(m_model, url, {"--wait"_s, "--json"_s}));
    QCOMPARE(slicer.waitForEvent("waiting"_s).value("reason"_s).toString(),
             "no connection (connection refused)"_s);
    const PrinterProcess printer({"--port"_s, QString::number(QUrl(url).port())});
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 0);
    QVERIFY(!printer.pathOf("part.zydlp"_s).isEmpty());
}

void TestPatience::waitsForAPrinterThatIsReceiving()
{
    const PrinterProcess printer;
    RawPeer other(quint16(printer.url().port()));
    QVERIFY(!other
                 .ask("{\"cmd\":\"START_FILE\",\"filename\":\"x\",\"key\":\"1\",\"offset\":\"0\","
                      "\"size\":\"1000\"}")
                 .isEmpty());
    SlicerProcess slicer(send(m_model, printer.url().toString(), {"--wait"_s}));
    QVERIFY(slicer.waitForOutput("printer busy, it is receiving a file; waiting for it\n"));
    other.abort();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 0);
    QCOMPARE(slicer.output().count("waiting for it"), 1);
}

void TestPatience::waitsForAPrintToEnd()
{
    const PrinterProcess printer({"--speed"_s, "1"_s});
    const QString url = printer.url().toString();
    QCOMPARE(runSlicer(send(m_model, url, {"--as"_s, "first.zydlp"_s, "--print"_s})).exitCode, 0);
    QCOMPARE(runSlicer(send(m_model, url)).exitCode, 0);
    EXPECT_FAILURE(runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, url}), 4,
                   "printer busy, it is printing first.zydlp: part.zydlp on ");
    SlicerProcess slicer(
        {"print"_s, "part.zydlp"_s, "--to"_s, url, "--wait"_s, "--interval"_s, "0.05"_s});
    QVERIFY(slicer.waitForOutput("it is printing first.zydlp; waiting for it\n"));
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
}

void TestPatience::asksForAPrintNoMoreThanOnce()
{
    const PrinterProcess printer({"--slow-check"_s, "2"_s});
    EXPECT_FAILURE(runSlicer(send(m_model, printer.url().toString(),
                                  {"--print"_s, "--wait"_s, "--check-timeout"_s, "0.5"_s})),
                   3, "print start not answered");
    QVERIFY(printer.output().count("checking \"part.zydlp\"") <= 1);
}

void TestPatience::waitsNoMoreAfterCtrlC()
{
    SlicerProcess slicer(
        {"send"_s, m_model, "--to"_s, deadUrl(), "--wait"_s, "--interval"_s, "3600"_s});
    QVERIFY(slicer.waitForOutput("waiting for it\n"));
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
}

void TestPatience::endsAtCtrlCWhileItLooksWhyItWasRefused_data()
{
    QTest::addColumn<QStringList>("more");
    QTest::newRow("waiting") << QStringList("--wait"_s);
    QTest::newRow("several files") << QStringList(m_big);
}

void TestPatience::endsAtCtrlCWhileItLooksWhyItWasRefused()
{
    QFETCH(QStringList, more);
    TestPrinter printer;
    printer.host().answers.getPrintState = 0;
    std::unique_ptr<SlicerProcess> slicer;
    bool hasEnded = false;
    printer.host().during("sigGetPrinterStatus"_s, [&] {
        slicer->interrupt();
        hasEnded = slicer->waitForExit();
    });
    slicer = std::make_unique<SlicerProcess>(
        send(m_model, "ws://127.0.0.1:%1"_s.arg(printer.port()), more));
    QVERIFY(zytest::waitUntil([&] { return hasEnded; }));
    QCOMPARE(slicer->exitCode(), 130);
    QCOMPARE(printer.host().count("getPrintState"_s), 1);
}

void TestPatience::showsThatATransferStalls()
{
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    const QString url = proxy.url().toString();
    SlicerProcess slicer(send(m_big, url, {"--json"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    proxy.freeze();
    const QJsonObject stalled = slicer.waitForEvent("stalled"_s);
    QCOMPARE(stalled.value("file"_s).toString(), "big.zydlp"_s);
    QVERIFY(stalled.value("silentMs"_s).toInt() >= 1000);
    proxy.thaw();
    QVERIFY(slicer.waitForExit());

    SlicerProcess lines(send(m_big, url));
    QVERIFY(lines.waitForOutput(" % "));
    proxy.freeze();
    QVERIFY(lines.waitForOutput("big.zydlp: no acknowledgement for "));
    proxy.thaw();
    QVERIFY(lines.waitForExit());
}

void TestPatience::answersCtrlCAtOnce()
{
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    SlicerProcess slicer(send(m_big, proxy.url().toString(), {"--stall"_s, "3600"_s}));
    QVERIFY(slicer.waitForOutput(" % "));
    proxy.freeze(); // nothing acknowledges the cancel
    slicer.interrupt();
    QVERIFY(slicer.waitForOutput("big.zydlp: cancelling; again to leave at once\n"));
    QTest::qWait(notOneInterruption);
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
}

void TestPatience::readsALargeFileBeforeItIsSent()
{
    constexpr qint64 size = Q_INT64_C(65536) * chunkBytes; // sparse: of no use but to be read
    const TestPrinter printer;
    const QString url = "ws://127.0.0.1:%1"_s.arg(printer.port());
    const QString file = zytest::writeFile(m_directory.filePath("large.zydlp"_s), "x");
    QVERIFY(QFile::resize(file, size));
    SlicerProcess slicer(send(file, url, {"--json"_s}));
    const QJsonObject reading = slicer.waitForEvent("reading"_s);
    QCOMPARE(reading.value("total"_s).toDouble(), double(size));
    QVERIFY(reading.value("read"_s).toDouble() > 0);
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    QVERIFY(eventsNamed("offered"_s, slicer.output()).isEmpty());
}

void TestPatience::keepsThePartWhenAskedTo()
{
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    proxy.setThroughput(4 * chunkBytes);
    SlicerProcess slicer(send(m_big, proxy.url().toString(), {"--json"_s, "--keep"_s}));
    QVERIFY(!slicer.waitForEvent("progress"_s).isEmpty());
    slicer.interrupt();
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 130);
    VERIFY_TEXT(isOneErrorLine(slicer.errors(), "is resumed when the file is sent again"),
                slicer.errors());
    QCOMPARE(printer.host().count("cancle"_s), 0);
    QVERIFY(printer.waitForConnections(0));
    proxy.setThroughput(0);
    const SlicerResult again = runSlicer(send(m_big, proxy.url().toString(), {"--json"_s}));
    QCOMPARE(again.exitCode, 0);
    QCOMPARE(eventsNamed("resumed"_s, again.output).size(), 1);
}

void TestPatience::leavesSomeOfTheLineToOthers()
{
    TestPrinter printer;
    QElapsedTimer time;
    time.start();
    const SlicerResult result = runSlicer(send(m_big, "ws://127.0.0.1:%1"_s.arg(printer.port()),
                                               {"--limit-rate"_s, "10M"_s, "--json"_s}));
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(time.elapsed() >= 1900, qPrintable(QString::number(time.elapsed())));
    QVERIFY(eventsNamed("stalled"_s, result.output).isEmpty());
}

void TestPatience::refusesARateThatIsNone_data()
{
    QTest::addColumn<QString>("rate");
    for (const char *rate : {"0", "-1K", "fast", "5X", "5KB", "nan", "inf", "", "1e30"})
        QTest::newRow(rate) << QString(QLatin1String(rate));
}

void TestPatience::refusesARateThatIsNone()
{
    QFETCH(QString, rate);
    EXPECT_FAILURE(runSlicer({"send"_s, m_model, "--limit-rate=%1"_s.arg(rate)}), 2,
                   "--limit-rate");
}

ZY_TEST(TestPatience)

#include "tst_patience.moc"
