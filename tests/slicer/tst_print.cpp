// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Prints, status, parameters and saved printers, with a real zyprinter.

#include "modelfiles.h"
#include "printerprocess.h"
#include "slicerprocess.h"
#include "testprinter.h"
#include "testprogram.h"
#include "texts.h"

#include <QTest>

class TestPrint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sendsPrintsAndFollowsUntilComplete();
    void followsAPrintInPlainLines();
    void doesNotTakeTheLastPrintForThisOne();
    void pausesGoesOnAndStops();
    void watchesNothingWhenNothingPrints();
    void showsTheStatusForPeople();
    void showsTheStatusForPrograms();
    void setsParametersAndKeepsTheOthers();
    void tellsAParameterThatThePrinterRefuses();
    void asksTheVersion();
    void getsACancelAcknowledged();
    void tellsAWrongToken();
    void answersEachCommandInJson();
    void savesListsAndForgetsPrinters();
    void usesTheOnlySavedPrinterByDefault();

private:
    QTemporaryDir m_directory;
    QString m_model;
};

namespace
{

const QStringList fast{QStringLiteral("--speed"), QStringLiteral("20000")};
const QStringList slow{QStringLiteral("--speed"), QStringLiteral("1")};

/// A printer that has "part.zydlp".
struct LoadedPrinter {
    LoadedPrinter(const QString &model, const QStringList &options)
        : process(options), url(process.url().toString()),
          isReady(runSlicer({"send"_s, model, "--to"_s, url, "--as"_s, "part.zydlp"_s}).exitCode
                  == 0)
    {
    }

    PrinterProcess process;
    QString url;
    bool isReady;
};

QJsonObject statusOf(const QString &url)
{
    const SlicerResult result = runSlicer({"status"_s, "--json"_s, "--to"_s, url});
    return eventsNamed("status"_s, result.output).value(0);
}

} // namespace

void TestPrint::initTestCase()
{
    m_model = makeModel(m_directory.filePath("part.zydlp"_s));
}

void TestPrint::sendsPrintsAndFollowsUntilComplete()
{
    PrinterProcess printer(fast);
    const SlicerResult result
        = runSlicer({"send"_s, m_model, "--to"_s, printer.url().toString(), "--print"_s,
                     "--watch"_s, "--interval"_s, "0.05"_s, "--json"_s});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(eventsNamed("print-checking"_s, result.output).size(), 1);
    QCOMPARE(eventsNamed("print-started"_s, result.output).size(), 1);
    const QJsonObject last = eventsNamed("status"_s, result.output).last();
    QCOMPARE(last.value("printStatus"_s).toString(), "PRINT_COMPLETE"_s);
    QCOMPARE(last.value("curSliceLayer"_s), last.value("sliceLayerCount"_s));
    QVERIFY(!last.contains("cmd"_s));
}

void TestPrint::followsAPrintInPlainLines()
{
    LoadedPrinter printer(m_model, fast);
    QVERIFY(printer.isReady);
    const SlicerResult result = runSlicer(
        {"print"_s, "part.zydlp"_s, "--to"_s, printer.url, "--watch"_s, "--interval"_s, "0.05"_s});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.contains("part.zydlp: print started\n"));
    VERIFY_TEXT(result.output.contains("complete part.zydlp, layer 20 of 20 (100 %)"),
                result.output);
}

void TestPrint::doesNotTakeTheLastPrintForThisOne()
{
    zytest::TestPrinter printer;
    PrintStatusPara status;
    status.filename = "last.zydlp"_s;
    status.printStatus = 2; // complete, and shown for a while after the next one has begun
    printer.host().answers.status = status;
    printer.host().during("sigGetPrinterStatus"_s, [&] {
        const int asked = printer.host().count("sigGetPrinterStatus"_s);
        if (asked == 4) {
            printer.host().answers.status->filename = "part.zydlp"_s;
            printer.host().answers.status->printStatus = 1;
        } else if (asked == 6) {
            printer.host().answers.status->printStatus = 4;
        }
    });
    const QString url = "ws://127.0.0.1:%1"_s.arg(printer.port());
    EXPECT_FAILURE(runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, url, "--watch"_s, "--interval"_s,
                              "0.05"_s}),
                   9, "print stopped: part.zydlp");
}

void TestPrint::pausesGoesOnAndStops()
{
    LoadedPrinter printer(m_model, slow);
    QVERIFY(printer.isReady);
    SlicerProcess watch({"print"_s, "part.zydlp"_s, "--to"_s, printer.url, "--watch"_s,
                         "--interval"_s, "0.05"_s, "--json"_s});
    QVERIFY(!watch.waitForEvent("status"_s).isEmpty());

    QCOMPARE(runSlicer({"pause"_s, "--to"_s, printer.url}).output, QByteArray("paused\n"));
    // A pause that waits for its layer counts as one already.
    const SlicerResult again = runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, printer.url});
    QCOMPARE(again.exitCode, 0);
    QCOMPARE(statusOf(printer.url).value("printStatus"_s).toString(), "PRINT_PROCESSING"_s);

    QCOMPARE(runSlicer({"stop"_s, "--to"_s, printer.url}).output, QByteArray("stopped\n"));
    QVERIFY(watch.waitForExit());
    QCOMPARE(watch.exitCode(), 9);
    VERIFY_TEXT(isOneErrorLine(watch.errors(), "print stopped: part.zydlp"), watch.errors());
}

void TestPrint::watchesNothingWhenNothingPrints()
{
    PrinterProcess printer;
    const SlicerResult result
        = runSlicer({"status"_s, "--watch"_s, "--to"_s, printer.url().toString()});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output, QByteArray("idle\n"));
}

void TestPrint::showsTheStatusForPeople()
{
    LoadedPrinter printer(m_model, slow);
    QCOMPARE(runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, printer.url}).exitCode, 0);
    const SlicerResult result = runSlicer({"status"_s, "--to"_s, printer.url});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.output.startsWith("printer            " + printer.url.toUtf8() + '\n'));
    QVERIFY(result.output.contains("\nstate              printing\n"));
    QVERIFY(result.output.contains("\nfile               part.zydlp\n"));
    QVERIFY(result.output.contains("\nlayer              1 of 20 (5 %)\n"));
    QVERIFY(result.output.contains("\ninitExposure       "));
}

void TestPrint::showsTheStatusForPrograms()
{
    PrinterProcess printer;
    const QJsonObject status = statusOf(printer.url().toString());
    QCOMPARE(status.value("printStatus"_s).toString(), "PRINT_GENERAL"_s);
    QCOMPARE(status.value("printer"_s).toString(), printer.url().toString());
}

void TestPrint::setsParametersAndKeepsTheOthers()
{
    PrinterProcess printer;
    const QString url = printer.url().toString();
    const QJsonObject before = statusOf(url);
    const SlicerResult result
        = runSlicer({"set"_s, "printExposure=3.5"_s, "bottomExposureNum=7"_s, "--to"_s, url});
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
    const QJsonObject after = statusOf(url);
    QCOMPARE(after.value("printExposure"_s), QJsonValue(3.5));
    QCOMPARE(after.value("bottomExposureNum"_s), QJsonValue(7));
    QVERIFY(before.value("initExposure"_s).isDouble());
    for (const QString &key : {"initExposure"_s, "delayLight"_s, "printHeight"_s, "eleSpeed"_s})
        QCOMPARE(after.value(key), before.value(key));
}

void TestPrint::tellsAParameterThatThePrinterRefuses()
{
    PrinterProcess printer;
    const SlicerResult result
        = runSlicer({"set"_s, "printExposure=fast"_s, "--to"_s, printer.url().toString()});
    QCOMPARE(result.exitCode, 5);
    VERIFY_TEXT(isOneErrorLine(result.errors, "parameter not taken: printExposure=fast"),
                result.errors);
}

void TestPrint::asksTheVersion()
{
    PrinterProcess printer;
    const QString url = printer.url().toString();
    QCOMPARE(runSlicer({"version"_s, "--to"_s, url}).output, QByteArray("version 1\n"));
    const SlicerResult json = runSlicer({"version"_s, "--to"_s, url, "--json"_s});
    QCOMPARE(jsonLines(json.output).first().value("version"_s).toString(), "1"_s);
}

void TestPrint::getsACancelAcknowledged()
{
    PrinterProcess printer;
    const SlicerResult result = runSlicer({"cancel"_s, "--to"_s, printer.url().toString()});
    QCOMPARE(result.exitCode, 0);
    VERIFY_TEXT(result.output.startsWith("cancel acknowledged; it reaches no transfer of another "
                                         "connection: stop one with Ctrl-C"),
                result.output);
}

void TestPrint::tellsAWrongToken()
{
    PrinterProcess printer({"--token"_s, "secret"_s});
    const QString url = printer.url().toString();
    QCOMPARE(runSlicer({"status"_s, "--to"_s, url, "--token"_s, "secret"_s}).exitCode, 0);
    const SlicerResult wrong = runSlicer({"status"_s, "--to"_s, url, "--token"_s, "wrong"_s});
    QCOMPARE(wrong.exitCode, 6);
    VERIFY_TEXT(isOneErrorLine(wrong.errors, "token rejected: " + url.toUtf8()), wrong.errors);
    QCOMPARE(runSlicer({"send"_s, m_model, "--to"_s, url}).exitCode, 6);
    QCOMPARE(runSlicer({"send"_s, m_model, "--to"_s, url, "--token"_s, "secret"_s}).exitCode, 0);
}

/// Their lines are held against the schema, too.
void TestPrint::answersEachCommandInJson()
{
    LoadedPrinter printer(m_model, slow);
    QCOMPARE(runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, printer.url, "--json"_s}).exitCode, 0);
    for (const QStringList &command :
         {QStringList{"set"_s, "eleSpeed=99"_s}, QStringList("version"_s), QStringList("cancel"_s),
          QStringList("pause"_s), QStringList("stop"_s)}) {
        const SlicerResult result
            = runSlicer(command + QStringList{"--json"_s, "--to"_s, printer.url});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(eventsNamed("answer"_s, result.output).size(), 1);
        QCOMPARE(jsonLines(result.output).size(), 2);
    }
}

void TestPrint::savesListsAndForgetsPrinters()
{
    const QString settings = m_directory.filePath("list.ini"_s);
    const auto printers = [&](const QStringList &arguments) {
        return runSlicer(QStringList("printers"_s) + arguments, settings);
    };
    QCOMPARE(printers({}).output, QByteArray());
    QCOMPARE(printers({"add"_s, "bench2"_s, "ws://10.0.0.2:80"_s}).exitCode, 0);
    QCOMPARE(printers({"add"_s, "a"_s, "10.0.0.1:8080"_s}).exitCode, 0);
    QCOMPARE(printers({}).output,
             QByteArray("a       ws://10.0.0.1:8080\nbench2  ws://10.0.0.2:80\n"));
    QCOMPARE(printers({"add"_s, "a"_s, "10.0.0.9:8080"_s}).exitCode, 0);
    QCOMPARE(printers({"remove"_s, "bench2"_s}).exitCode, 0);
    const QJsonObject line = eventsNamed("printer"_s, printers({"--json"_s}).output).value(0);
    QCOMPARE(line.value("name"_s).toString(), "a"_s);
    QCOMPARE(line.value("url"_s).toString(), "ws://10.0.0.9:8080"_s);
    QCOMPARE(printers({"remove"_s, "bench2"_s}).exitCode, 2);
    QCOMPARE(printers({"add"_s, "b/c"_s, "ws://10.0.0.2:80"_s}).exitCode, 2);
    QCOMPARE(printers({"add"_s, "c"_s, "ftp://10.0.0.2"_s}).exitCode, 2);
}

void TestPrint::usesTheOnlySavedPrinterByDefault()
{
    PrinterProcess printer;
    const QString settings = m_directory.filePath("default.ini"_s);
    const SlicerResult none = runSlicer({"version"_s}, settings);
    QCOMPARE(none.exitCode, 2);
    VERIFY_TEXT(isOneErrorLine(none.errors, "0 saved printers"), none.errors);

    QCOMPARE(
        runSlicer({"printers"_s, "add"_s, "bench1"_s, printer.url().toString()}, settings).exitCode,
        0);
    QCOMPARE(runSlicer({"version"_s}, settings).exitCode, 0);
    QCOMPARE(runSlicer({"version"_s, "--to"_s, "bench1"_s}, settings).exitCode, 0);
    // The option before the environment.
    QCOMPARE(runSlicer({"version"_s, "--to"_s, "bench1"_s, "--settings"_s, settings}).exitCode, 0);

    QCOMPARE(runSlicer({"printers"_s, "add"_s, "bench2"_s, deadUrl()}, settings).exitCode, 0);
    QCOMPARE(runSlicer({"version"_s}, settings).exitCode, 2);
}

ZY_TEST(TestPrint)

#include "tst_print.moc"
