// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the panel says and computes without a printer: words, addresses, names, rate, layers.

#include "address.h"
#include "formatting.h"
#include "layerhistory.h"
#include "localfile.h"
#include "printerstatus.h"
#include "transferestimate.h"
#include "translations.h"
#include "words.h"

#include <QCoreApplication>
#include <QLocale>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;

namespace
{

const char *const stateWords[]
    = {"PRINT_GENERAL", "PRINT_PROCESSING", "PRINT_COMPLETE",   "PRINT_FAIL", "PRINT_END",
       "PRINT_STOP",    "PRINT_STOPING",    "PRINT_COMPLETING", "TOKEN_ERROR"};

/// Every sentence for a code, word or fault that there is.
QStringList allSentences()
{
    const QString file = QStringLiteral("part.zydlp");
    QStringList all;
    for (int code : {-2, -1, 1, 2, 3, 4})
        all.append(transferErrorNotice(code).text);
    for (int wifiState : {3, 4, 5})
        all.append(transferErrorNotice(1, wifiState).text);
    for (int code = 0; code <= 4; ++code)
        all.append(printAnswerNotice(code, file).text);
    for (int state = 0; state <= 2; ++state)
        all.append(checkStateNotice(state, file).text);
    for (const char *word : {"CMD_SUCCES", "CMD_FAIL", "TOKEN_ERROR"}) {
        for (Command command : {Command::Pause, Command::Stop, Command::SetParameters})
            all.append(commandResultNotice(command, QLatin1String(word)).text);
    }
    all.append(commandResultNotice(Command::SetParameters, QString()).text);
    for (int fault = 0; fault <= int(LinkFault::Silent); ++fault)
        all.append(linkFaultNotice(LinkFault(fault), QStringLiteral("bench1")).text);
    for (int fault = 1; fault <= int(FileFault::NameReserved); ++fault)
        all.append(fileFaultNotice(FileFault(fault), file).text);
    for (const char *word : stateWords)
        all.append(stateNotice(stateOfWord(QLatin1String(word)), file).text);
    for (const QString &key : parameterKeys())
        all.append(parameterTitle(key));
    return all;
}

PrinterStatus printing(int layer, int layerCount)
{
    PrinterStatus status;
    status.state = PrinterStatus::State::Printing;
    status.filename = QStringLiteral("part.zydlp");
    status.layer = layer;
    status.layerCount = layerCount;
    return status;
}

} // namespace

class TestPanelWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCodeAndWordHasASentenceOfItsOwn();
    void everyStateWordHasItsTitle();
    void addressesBecomeUrls_data();
    void addressesBecomeUrls();
    void numbersOfThePrinterBecomeReadable_data();
    void numbersOfThePrinterBecomeReadable();
    void rateFollowsTheLastSeconds();
    void resumedBytesAreNoSpeed();
    void layersOfOneJobAreKept();
    void aLongPrintKeepsItsPlotBounded();

    void codesThatNobodyKnowsAreNamed();
    void filesThatCannotBeSentAreFound_data();
    void filesThatCannotBeSentAreFound();
    void namesThatThePrinterMustNotGetAreFound_data();
    void namesThatThePrinterMustNotGetAreFound();

    // Last: the translator stays.
    void germanSaysEverySentenceInGerman();
};

void TestPanelWords::everyCodeAndWordHasASentenceOfItsOwn()
{
    const QStringList all = allSentences();
    for (const QString &sentence : all)
        QVERIFY2(!sentence.isEmpty() && !sentence.contains(QLatin1String("%1")),
                 qPrintable(sentence));
    QCOMPARE(QSet<QString>(all.begin(), all.end()).size(), all.size());
}

void TestPanelWords::everyStateWordHasItsTitle()
{
    QSet<QString> titles{stateTitle(PrinterStatus::State::Unknown)};
    for (const char *word : stateWords)
        titles.insert(stateTitle(stateOfWord(QLatin1String(word))));
    QCOMPARE(titles.size(), 10);
    QCOMPARE(stateTitle(stateOfWord(QStringLiteral("PRINT_PROCESSING"))),
             QStringLiteral("Printing"));
}

void TestPanelWords::addressesBecomeUrls_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");
    QTest::newRow("whole") << "ws://192.168.1.20:8080"
                           << "ws://192.168.1.20:8080";
    QTest::newRow("scheme left out") << "printer.local:8080"
                                     << "ws://printer.local:8080";
    QTest::newRow("spaces around") << "  10.0.0.1:80 "
                                   << "ws://10.0.0.1:80";
    QTest::newRow("with TLS") << "wss://printer"
                              << "wss://printer";
    QTest::newRow("IPv6") << "ws://[::1]:9000"
                          << "ws://[::1]:9000";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("another scheme") << "http://printer"
                                    << "";
    QTest::newRow("no host") << "ws://:80"
                             << "";
    QTest::newRow("port too large") << "printer:99999"
                                    << "";
    QTest::newRow("port 0") << "printer:0"
                            << "";
    QTest::newRow("a sentence") << "the one upstairs"
                                << "";
}

void TestPanelWords::addressesBecomeUrls()
{
    QFETCH(QString, text);
    QFETCH(QString, url);
    QCOMPARE(printerUrl(text).toString(), url);
}

void TestPanelWords::numbersOfThePrinterBecomeReadable_data()
{
    QTest::addColumn<QString>("read");
    QTest::addColumn<QString>("expected");
    QTest::newRow("seconds") << timeText(QStringLiteral("59")) << "59 s";
    QTest::newRow("minutes") << timeText(QStringLiteral("200")) << "3 min 20 s";
    QTest::newRow("hours") << timeText(QStringLiteral("3900")) << "1 h 5 min";
    QTest::newRow("a text of its own") << timeText(QStringLiteral("02:10")) << "02:10";
    QTest::newRow("length") << lengthText(QStringLiteral("0.05")) << "0.05 mm";
    QTest::newRow("length as text") << lengthText(QStringLiteral("50 µm")) << "50 µm";
    QTest::newRow("progress") << progressText(12 * 1024 * 1024, 40 * 1024 * 1024, 2097152, 14)
                              << QStringLiteral(
                                     "12.0 MiB of 40.0 MiB   ·   2.0 MiB/s   ·   14 s left");
    QTest::newRow("progress without a rate")
        << progressText(512, 1024, 0, -1) << QStringLiteral("512 bytes of 1.0 KiB");
}

void TestPanelWords::numbersOfThePrinterBecomeReadable()
{
    QFETCH(QString, read);
    QFETCH(QString, expected);
    QCOMPARE(read, expected);
}

void TestPanelWords::rateFollowsTheLastSeconds()
{
    TransferEstimate estimate;
    estimate.start(0, 100000, 0);
    QCOMPARE(estimate.secondsLeft(), qint64(-1));
    for (int second = 1; second <= 10; ++second)
        estimate.add(second * 1000, second * 1000);
    QCOMPARE(estimate.rate(), 1000.0);
    QCOMPARE(estimate.secondsLeft(), qint64(90));
    // Ten times as fast from now on: after the window, nothing is left of the slow start.
    for (int second = 1; second <= 6; ++second)
        estimate.add(10000 + second * 10000, (10 + second) * 1000);
    QCOMPARE(estimate.rate(), 10000.0);
    QCOMPARE(estimate.secondsLeft(), qint64(3));
}

void TestPanelWords::resumedBytesAreNoSpeed()
{
    TransferEstimate estimate;
    estimate.start(50000, 100000, 0);
    QCOMPARE(estimate.rate(), 0.0);
    estimate.add(51000, 1000);
    QCOMPARE(estimate.rate(), 1000.0);
}

void TestPanelWords::layersOfOneJobAreKept()
{
    LayerHistory history;
    QVERIFY(!history.add(PrinterStatus(), 0));
    QVERIFY(history.add(printing(1, 100), 5000));
    QVERIFY(history.add(printing(3, 100), 7000));
    QCOMPARE(history.points().size(), 2);
    QCOMPARE(history.points().last().seconds, 2.0);
    QCOMPARE(history.points().last().layer, 3);
    // The same file printed again.
    QVERIFY(history.add(printing(0, 100), 9000));
    QCOMPARE(history.points().size(), 1);
}

void TestPanelWords::aLongPrintKeepsItsPlotBounded()
{
    LayerHistory history;
    constexpr int layers = 10000;
    for (int layer = 1; layer <= layers; ++layer)
        history.add(printing(layer, layers), layer * 1000);
    QVERIFY(history.points().size() <= LayerHistory::maximumPoints);
    QVERIFY(history.points().size() >= LayerHistory::maximumPoints / 2);
    QCOMPARE(history.points().first().layer, 1);
    QCOMPARE(history.points().last().layer, layers);
}

void TestPanelWords::codesThatNobodyKnowsAreNamed()
{
    const QString file = QStringLiteral("part.zydlp");
    QVERIFY(transferErrorNotice(77).text.contains(QLatin1String("77")));
    QVERIFY(printAnswerNotice(78, file).text.contains(QLatin1String("78")));
    QVERIFY(checkStateNotice(79, file).text.contains(QLatin1String("79")));
    QVERIFY(commandResultNotice(Command::Pause, QStringLiteral("HUH"))
                .text.contains(QLatin1String("HUH")));
    QCOMPARE(stateOfWord(QStringLiteral("PRINT_DANCING")), PrinterStatus::State::Unknown);
    QVERIFY(!stateNotice(PrinterStatus::State::Unknown, file).text.isEmpty());
}

void TestPanelWords::filesThatCannotBeSentAreFound_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fault");
    QTest::newRow("good") << "good" << int(FileFault::None);
    QTest::newRow("missing") << "missing" << int(FileFault::Missing);
    QTest::newRow("a folder") << "." << int(FileFault::NotAFile);
    QTest::newRow("empty") << "empty" << int(FileFault::Empty);
}

void TestPanelWords::filesThatCannotBeSentAreFound()
{
    QFETCH(QString, name);
    QFETCH(int, fault);
    const QTemporaryDir directory;
    for (const char *text : {"good", "empty"}) {
        QFile file(directory.filePath(QLatin1String(text)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        if (file.fileName().endsWith(QLatin1String("good")))
            QCOMPARE(file.write("x"), qint64(1));
    }
    QCOMPARE(int(checkLocalFile(directory.filePath(name))), fault);
}

void TestPanelWords::namesThatThePrinterMustNotGetAreFound_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fault");
    QTest::newRow("good") << "part.zydlp" << int(FileFault::None);
    QTest::newRow("dots inside") << "a..b.zydlp" << int(FileFault::None);
    QTest::newRow("blank") << "  " << int(FileFault::NameMissing);
    QTest::newRow("path") << "a/b" << int(FileFault::NameHasPath);
    QTest::newRow("Windows path") << "a\\b" << int(FileFault::NameHasPath);
    QTest::newRow("parent") << ".." << int(FileFault::NameHasPath);
    QTest::newRow("reception file") << "wifi_tranfer.tmp" << int(FileFault::NameReserved);
}

void TestPanelWords::namesThatThePrinterMustNotGetAreFound()
{
    QFETCH(QString, name);
    QFETCH(int, fault);
    QCOMPARE(int(checkPrinterName(name)), fault);
}

void TestPanelWords::germanSaysEverySentenceInGerman()
{
    const QStringList english = allSentences();
    installTranslations(*QCoreApplication::instance(), QLocale(QLocale::German));
    const QStringList german = allSentences();
    for (int i = 0; i < english.size(); ++i)
        QVERIFY2(german.at(i) != english.at(i), qPrintable(english.at(i)));
    QCOMPARE(stateTitle(PrinterStatus::State::Printing), QStringLiteral("Druckt"));
}

QTEST_GUILESS_MAIN(TestPanelWords)
#include "tst_panel_words.moc"
