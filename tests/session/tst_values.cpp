// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What needs neither printer nor file: addresses, names, the status model, the rate.

#include "printerstatus.h"
#include "ratemeter.h"
#include "savedprinters.h"
#include "testprogram.h"
#include "texts.h"

#include <QJsonObject>
#include <QTest>

using namespace zysession;
using State = PrinterStatus::State;

namespace
{

PrinterStatus statusWith(const char *key, const char *value)
{
    return PrinterStatus::fromReply({{QString::fromUtf8(key), QString::fromUtf8(value)}});
}

} // namespace

class TestValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAddresses_data();
    void readsAddresses();
    void tellsNamesFromAddresses_data();
    void tellsNamesFromAddresses();
    void knowsEachStateWord_data();
    void knowsEachStateWord();
    void readsAWholeStatus();
    void takesWhatIsNoCountAsNone_data();
    void takesWhatIsNoCountAsNone();
    void comparesNumbersAsNumbers_data();
    void comparesNumbersAsNumbers();
    void findsNoDifferenceInAnotherWayToWriteANumber();
    void measuresTheRateOfTheLastSeconds();
    void knowsNoRateBeforeTheFirstChunk();
    void takesWhatWasThereBeforeForNoSpeed();
};

void TestValues::readsAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url"); // empty: refused
    const auto row = [](const char *text, const char *url) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(url);
    };
    row("ws://192.168.1.20:8080", "ws://192.168.1.20:8080");
    row("wss://printer.local:443", "wss://printer.local:443");
    row("192.168.1.20:8080", "ws://192.168.1.20:8080");
    row("  10.0.0.1:80 ", "ws://10.0.0.1:80");
    row("printer.local", "ws://printer.local");
    row("[::1]:8080", "ws://[::1]:8080");
    row("http://192.168.1.20", "");
    row("ws://", "");
    row("ws://:80", "");
    row("ws://host:0", "");
    row("ws://host:99999", "");
    row("ws://ho st:1", "");
    row("the one upstairs", "");
    row("", "");
}

void TestValues::readsAddresses()
{
    QFETCH(QString, text);
    QFETCH(QString, url);
    QCOMPARE(printerUrl(text).toString(), url);
}

void TestValues::tellsNamesFromAddresses_data()
{
    QTest::addColumn<bool>("isName");
    QTest::newRow("bench1") << true;
    QTest::newRow("lab-2_left") << true;
    QTest::newRow("Büro") << true;
    QTest::newRow("") << false;
    QTest::newRow("host:80") << false;
    QTest::newRow("192.168.1.20") << false;
    QTest::newRow("ws://host") << false;
    QTest::newRow("a/b") << false;
    QTest::newRow(QByteArray(64, 'x').constData()) << true;
    QTest::newRow(QByteArray(65, 'x').constData()) << false;
}

void TestValues::tellsNamesFromAddresses()
{
    QTEST(isPrinterName(QString::fromUtf8(QTest::currentDataTag())), "isName");
}

void TestValues::knowsEachStateWord_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("hasJob");
    QTest::addColumn<bool>("canStop");
    const auto row = [](const char *word, State state, bool hasJob, bool canStop) {
        QTest::newRow(word) << int(state) << hasJob << canStop;
    };
    row("PRINT_GENERAL", State::Ready, false, false);
    row("PRINT_PROCESSING", State::Printing, true, true);
    row("PRINT_COMPLETE", State::Complete, false, false);
    row("PRINT_FAIL", State::Failed, false, false);
    row("PRINT_END", State::Ended, false, false);
    row("PRINT_STOP", State::Paused, true, true);
    row("PRINT_STOPING", State::Halting, true, true);
    row("PRINT_COMPLETING", State::Completing, true, false);
    row("TOKEN_ERROR", State::TokenRejected, false, false);
    row("PRINT_STOPPING", State::Unknown, false, false);
    row("", State::Unknown, false, false);
}

void TestValues::knowsEachStateWord()
{
    const PrinterStatus status = statusWith("printStatus", QTest::currentDataTag());
    QCOMPARE(status.word, QString::fromUtf8(QTest::currentDataTag()));
    QTEST(int(status.state), "state");
    QTEST(status.hasJob(), "hasJob");
    QTEST(status.canStop(), "canStop");
}

void TestValues::readsAWholeStatus()
{
    const PrinterStatus status = PrinterStatus::fromReply({{"printStatus"_s, "PRINT_PROCESSING"_s},
                                                           {"filename"_s, "part.zydlp"_s},
                                                           {"sliceLayerCount"_s, "400"_s},
                                                           {"curSliceLayer"_s, "100"_s},
                                                           {"printRemainTime"_s, "750"_s},
                                                           {"layerThickness"_s, "0.05"_s},
                                                           {"resin"_s, "grey"_s},
                                                           {"eleSpeed"_s, "60"_s}});
    QCOMPARE(status.filename, "part.zydlp"_s);
    QCOMPARE(status.layer, 100);
    QCOMPARE(status.layerCount, 400);
    QCOMPARE(status.layerFraction(), 0.25);
    QCOMPARE(status.remainingSeconds(), qint64(750));
    QCOMPARE(status.layerThickness, "0.05"_s);
    QCOMPARE(status.resin, "grey"_s);
    QCOMPARE(status.parameters.size(), parameterKeys().size());
    for (const QString &key : parameterKeys())
        QVERIFY(status.parameters.contains(key));
    QCOMPARE(status.parameters.value("eleSpeed"_s), "60"_s);
}

void TestValues::takesWhatIsNoCountAsNone_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("20") << 20;
    QTest::newRow("20.0") << 20;
    QTest::newRow("-1") << 0;
    QTest::newRow("nan") << 0;
    QTest::newRow("inf") << 0;
    QTest::newRow("99999999999") << 0;
    QTest::newRow("many") << 0;
    QTest::newRow("") << 0;
}

void TestValues::takesWhatIsNoCountAsNone()
{
    const PrinterStatus status = statusWith("sliceLayerCount", QTest::currentDataTag());
    QTEST(status.layerCount, "count");
    QCOMPARE(status.layerFraction(), status.layerCount == 0 ? -1.0 : 0.0);
    QCOMPARE(statusWith("printRemainTime", "02:10").remainingSeconds(), qint64(-1));
}

void TestValues::comparesNumbersAsNumbers_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<bool>("isSame");
    const auto row = [](const char *left, const char *right, bool isSame) {
        QTest::addRow("%s and %s", left, right)
            << QString::fromUtf8(left) << QString::fromUtf8(right) << isSame;
    };
    row("30", "30.0", true);
    row("0", "0.000", true);
    row("0.1", "1e-1", true);
    row("-1", "-1.0", true);
    row("30", "30.01", false);
    row("0", "0.0001", false);
    row("fast", "fast", true);
    row("fast", "FAST", false);
    row("nan", "nan", true);
    row("", "0", false);
}

void TestValues::comparesNumbersAsNumbers()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QTEST(isSameValue(left, right), "isSame");
    QTEST(isSameValue(right, left), "isSame");
}

void TestValues::findsNoDifferenceInAnotherWayToWriteANumber()
{
    QVERIFY(statusWith("eleSpeed", "60") == statusWith("eleSpeed", "60.0"));
    QVERIFY(statusWith("printRemainTime", "60") == statusWith("printRemainTime", "60.0"));
    QVERIFY(statusWith("eleSpeed", "60") != statusWith("eleSpeed", "61"));
    QVERIFY(statusWith("filename", "1") != statusWith("filename", "1.0"));
    QVERIFY(statusWith("curSliceLayer", "1") != statusWith("curSliceLayer", "2"));
}

void TestValues::measuresTheRateOfTheLastSeconds()
{
    RateMeter meter;
    meter.start(0, 0);
    for (int second = 1; second <= 10; ++second)
        meter.add(second * 1000, second * 100);
    for (int second = 11; second <= 20; ++second)
        meter.add(second * 1000, 1000 + (second - 10) * 1000);
    QCOMPARE(meter.bytesPerSecond(), 1000.0);
    QCOMPARE(meter.secondsLeft(21000), 10LL);
    QCOMPARE(meter.secondsLeft(10000), 0LL);
}

void TestValues::knowsNoRateBeforeTheFirstChunk()
{
    RateMeter meter;
    QCOMPARE(meter.bytesPerSecond(), 0.0);
    QCOMPARE(meter.secondsLeft(100), -1LL);
    meter.start(5000, 300);
    QCOMPARE(meter.bytesPerSecond(), 0.0);
    meter.add(5000, 400); // in no time at all
    QCOMPARE(meter.bytesPerSecond(), 0.0);
}

void TestValues::takesWhatWasThereBeforeForNoSpeed()
{
    RateMeter meter;
    meter.start(0, 50000);
    meter.add(1000, 51000);
    QCOMPARE(meter.bytesPerSecond(), 1000.0);
}

ZY_TEST(TestValues)

#include "tst_values.moc"
