// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the program says about a print, beyond the printer's own few words.

#include "printerprocess.h"
#include "scriptedprinter.h"
#include "slicerprocess.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

#include <memory>

class TestWording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void tellsThatAPausedPrintGoesOn();
    void tellsThatAPrintWasStoppedDuringItsCheck();
    void tellsThatThePrinterHasRestarted();
    void namesTheParametersThatWereTaken();
    void tellsThatACommandWasNotAnswered();
    void tellsNoRateOfWhatTookNoTime();

private:
    QTemporaryDir m_directory;
    QString m_model;
};

void TestWording::initTestCase()
{
    m_model = makeModel(m_directory.filePath("part.zydlp"_s));
}

void TestWording::tellsThatAPausedPrintGoesOn()
{
    const PrinterProcess printer({"--speed"_s, "1"_s});
    const QString url = printer.url().toString();
    const SlicerResult first = runSlicer({"send"_s, m_model, "--to"_s, url, "--print"_s});
    VERIFY_TEXT(first.output.contains("part.zydlp: print started\n"), first.output);
    QCOMPARE(runSlicer({"pause"_s, "--to"_s, url}).exitCode, 0);
    const SlicerResult again = runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, url});
    QCOMPARE(again.exitCode, 0);
    VERIFY_TEXT(again.output.contains("part.zydlp: the paused print goes on\n"), again.output);
}

void TestWording::tellsThatAPrintWasStoppedDuringItsCheck()
{
    const PrinterProcess printer({"--slow-check"_s, "3600"_s});
    const QString url = printer.url().toString();
    QCOMPARE(runSlicer({"send"_s, m_model, "--to"_s, url}).exitCode, 0);
    SlicerProcess print({"print"_s, "part.zydlp"_s, "--to"_s, url, "--json"_s});
    QVERIFY(!print.waitForEvent("print-checking"_s).isEmpty());
    QCOMPARE(runSlicer({"stop"_s, "--to"_s, url}).exitCode, 0);
    QVERIFY(print.waitForExit());
    QCOMPARE(print.exitCode(), 9);
    VERIFY_TEXT(isOneErrorLine(print.errors(), "print stopped during the check: part.zydlp on "),
                print.errors());
}

void TestWording::tellsThatThePrinterHasRestarted()
{
    const QString port = QString::number(QUrl(deadUrl()).port());
    const QStringList options{"--port"_s, port, "--speed"_s, "1"_s};
    auto printer = std::make_unique<PrinterProcess>(options);
    SlicerProcess slicer({"send"_s, m_model, "--to"_s, printer->url().toString(), "--print"_s,
                          "--watch"_s, "--interval"_s, "0.05"_s, "--back-off"_s, "0.2"_s,
                          "--retries"_s, "100"_s, "--json"_s});
    QVERIFY(!slicer.waitForEvent("status"_s).isEmpty());
    printer->kill();
    printer = std::make_unique<PrinterProcess>(options);
    QVERIFY(slicer.waitForExit());
    QCOMPARE(slicer.exitCode(), 9);
    VERIFY_TEXT(
        isOneErrorLine(slicer.errors(), "print lost, the printer has restarted: part.zydlp on ")
            && slicer.errors().contains(", layer 1 of 20; "),
        slicer.errors());
}

void TestWording::namesTheParametersThatWereTaken()
{
    const PrinterProcess printer;
    const QString url = printer.url().toString();
    QCOMPARE(runSlicer({"set"_s, "eleSpeed=100"_s, "printHeight=4"_s, "--to"_s, url}).output,
             QByteArray("parameters set: printHeight=4 eleSpeed=100\n"));
    EXPECT_FAILURE(runSlicer({"set"_s, "printExposure=fast"_s, "eleSpeed=200"_s, "--to"_s, url}), 5,
                   "parameter not taken: printExposure=fast on " + url.toUtf8()
                       + "; the printer keeps printExposure=2.5; it has taken eleSpeed=200; ");
}

void TestWording::tellsThatACommandWasNotAnswered()
{
    const zytest::ScriptedPrinter printer; // answers nothing
    EXPECT_FAILURE(
        runSlicer({"version"_s, "--to"_s, printer.url().toString(), "--timeout"_s, "0.3"_s}), 3,
        "version not answered (no answer within 0.3 s): " + printer.url().toString().toUtf8()
            + "; the connection is open, but the printer did not answer this command");
}

void TestWording::tellsNoRateOfWhatTookNoTime()
{
    const PrinterProcess printer;
    for (int i = 0; i < 10; ++i) {
        const SlicerResult result
            = runSlicer({"send"_s, m_model, "--to"_s, printer.url().toString()});
        VERIFY_TEXT(!result.output.contains(" 0 B/s"), result.output);
    }
}

ZY_TEST(TestWording)

#include "tst_wording.moc"
