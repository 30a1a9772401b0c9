// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The rooms of zyslicer that need no printer: amounts, rates, lines, addresses, offsets.

#include "modelfile.h"
#include "printeraddress.h"
#include "printphase.h"
#include "progressline.h"
#include "ratemeter.h"
#include "resumeoffset.h"
#include "timelimits.h"
#include "units.h"

#include <QtTest>

class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesAmountsInTheirUnit();
    void writesDurationsAsClocksDo();
    void measuresTheRateOfTheLastSeconds();
    void knowsNoRateBeforeTheFirstChunk();
    void fitsAnyWidth_data();
    void fitsAnyWidth();
    void dropsTheLeastImportantColumnFirst();
    void findsTheOffsetThatATransferResumedFrom_data();
    void findsTheOffsetThatATransferResumedFrom();
    void doublesThePauseUpToTheLongest();
    void readsAddresses_data();
    void readsAddresses();
    void tellsNamesFromAddresses_data();
    void tellsNamesFromAddresses();
    void takesUnknownStatusWordsAsUnknown();
};

void TestTexts::writesAmountsInTheirUnit()
{
    QCOMPARE(byteText(0), QStringLiteral("0 B"));
    QCOMPARE(byteText(1023), QStringLiteral("1023 B"));
    QCOMPARE(byteText(1024), QStringLiteral("1.0 KiB"));
    QCOMPARE(byteText(41943040), QStringLiteral("40.0 MiB"));
    QCOMPARE(byteText(1048576, 41943040), QStringLiteral("1.0/40.0 MiB"));
    QCOMPARE(byteText(5LL << 30), QStringLiteral("5.0 GiB"));
    QCOMPARE(rateText(0), QStringLiteral("0 B/s"));
}

void TestTexts::writesDurationsAsClocksDo()
{
    QCOMPARE(durationText(0), QStringLiteral("0:00"));
    QCOMPARE(durationText(59), QStringLiteral("0:59"));
    QCOMPARE(durationText(754), QStringLiteral("12:34"));
    QCOMPARE(durationText(3723), QStringLiteral("1:02:03"));
    QCOMPARE(durationText(360000), QStringLiteral("100:00:00"));
}

void TestTexts::measuresTheRateOfTheLastSeconds()
{
    RateMeter meter;
    meter.start(0, 0);
    for (int second = 1; second <= 10; ++second)
        meter.add(second * 1000, second * 100);
    for (int second = 11; second <= 20; ++second)
        meter.add(second * 1000, 1000 + (second - 10) * 1000);
    QCOMPARE(meter.bytesPerSecond(), 1000.0);
    QCOMPARE(meter.secondsLeft(21000), 10LL);
}

void TestTexts::knowsNoRateBeforeTheFirstChunk()
{
    RateMeter meter;
    QCOMPARE(meter.bytesPerSecond(), 0.0);
    QCOMPARE(meter.secondsLeft(100), -1LL);
    meter.start(5000, 300);
    QCOMPARE(meter.bytesPerSecond(), 0.0);
    meter.add(5000, 400); // in no time at all
    QCOMPARE(meter.bytesPerSecond(), 0.0);
}

void TestTexts::fitsAnyWidth_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<double>("fraction");
    QTest::newRow("begun") << QStringLiteral("demo.zydlp") << 0.0;
    QTest::newRow("half") << QStringLiteral("demo.zydlp") << 0.5;
    QTest::newRow("whole") << QStringLiteral("demo.zydlp") << 1.0;
    QTest::newRow("beyond the whole") << QStringLiteral("demo.zydlp") << 1.5;
    QTest::newRow("no bar") << QStringLiteral("demo.zydlp") << -1.0;
    QTest::newRow("long label") << QString(300, QLatin1Char('x')) << 0.3;
}

void TestTexts::fitsAnyWidth()
{
    QFETCH(QString, label);
    QFETCH(double, fraction);
    const ProgressRow row{label,
                          fraction,
                          {QStringLiteral("18.2/40.0 MiB"), QStringLiteral("93.1 MiB/s"),
                           QStringLiteral("0:12 left")}};
    for (int width = 1; width <= 250; ++width)
        QVERIFY2(progressLine(row, width).size() <= width, qPrintable(progressLine(row, width)));
}

void TestTexts::dropsTheLeastImportantColumnFirst()
{
    const ProgressRow row{QStringLiteral("demo.zydlp"),
                          0.5,
                          {QStringLiteral("18.2/40.0 MiB"), QStringLiteral("93.1 MiB/s"),
                           QStringLiteral("0:12 left")}};
    const QString wide = progressLine(row, 100);
    QVERIFY(wide.contains(QStringLiteral("[===")));
    QVERIFY(wide.contains(QStringLiteral(" 50 %  18.2/40.0 MiB  93.1 MiB/s  0:12 left")));
    const QString narrow = progressLine(row, 60);
    QVERIFY(narrow.contains(QStringLiteral("18.2/40.0 MiB")));
    QVERIFY(!narrow.contains(QStringLiteral("left")));
    QCOMPARE(progressLine(row, 20), QStringLiteral(" 50 %  demo.zydlp"));
}

void TestTexts::findsTheOffsetThatATransferResumedFrom_data()
{
    constexpr qint64 mib = 1048576;
    QTest::addColumn<qint64>("received");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<qint64>("offset");
    QTest::newRow("new, one byte") << qint64(1) << qint64(1) << qint64(0);
    QTest::newRow("new, one chunk") << mib << mib << qint64(0);
    QTest::newRow("new, first of two") << mib << mib + 1 << qint64(0);
    QTest::newRow("resumed, last byte") << mib + 1 << mib + 1 << mib;
    QTest::newRow("resumed in the middle") << 7 * mib << 10 * mib << 6 * mib;
    QTest::newRow("resumed, last whole chunk") << 10 * mib << 10 * mib << 9 * mib;
    QTest::newRow("resumed at an uneven offset") << 5 + mib << 10 * mib << qint64(5);
    QTest::newRow("nothing") << qint64(0) << qint64(0) << qint64(0);
}

void TestTexts::findsTheOffsetThatATransferResumedFrom()
{
    QFETCH(qint64, received);
    QFETCH(qint64, total);
    QTEST(resumeOffset(received, total), "offset");
}

void TestTexts::doublesThePauseUpToTheLongest()
{
    Limits limits;
    limits.firstBackOff = 1000;
    limits.longestBackOff = 5000;
    QCOMPARE(backOff(limits, 1), 1000);
    QCOMPARE(backOff(limits, 2), 2000);
    QCOMPARE(backOff(limits, 3), 4000);
    QCOMPARE(backOff(limits, 4), 5000);
    QCOMPARE(backOff(limits, 1000000), 5000);
}

void TestTexts::readsAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url"); // empty: refused
    const auto row = [](const char *text, const char *url) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(url);
    };
    row("ws://192.168.1.20:8080", "ws://192.168.1.20:8080");
    row("wss://printer.local:443", "wss://printer.local:443");
    row("192.168.1.20:8080", "ws://192.168.1.20:8080");
    row("printer.local", "ws://printer.local");
    row("[::1]:8080", "ws://[::1]:8080");
    row("http://192.168.1.20", "");
    row("ws://", "");
    row("ws://host:0", "");
    row("ws://host:99999", "");
    row("ws://ho st:1", "");
    row("", "");
}

void TestTexts::readsAddresses()
{
    QFETCH(QString, text);
    QFETCH(QString, url);
    QUrl parsed;
    const Outcome outcome = parsePrinterAddress(text, parsed);
    QCOMPARE(outcome.isOk(), !url.isEmpty());
    if (outcome.isOk())
        QCOMPARE(parsed.toString(), url);
    else
        QCOMPARE(int(outcome.code), int(ExitCode::Usage));
}

void TestTexts::tellsNamesFromAddresses_data()
{
    QTest::addColumn<bool>("isName");
    QTest::newRow("bench1") << true;
    QTest::newRow("lab-2_left") << true;
    QTest::newRow("") << false;
    QTest::newRow("host:80") << false;
    QTest::newRow("192.168.1.20") << false;
    QTest::newRow("ws://host") << false;
    QTest::newRow("a/b") << false;
}

void TestTexts::tellsNamesFromAddresses()
{
    QTEST(isPrinterName(QString::fromUtf8(QTest::currentDataTag())), "isName");
}

void TestTexts::takesUnknownStatusWordsAsUnknown()
{
    QVERIFY(printPhase(QStringLiteral("PRINT_PROCESSING")) == PrintPhase::Running);
    QVERIFY(printPhase(QStringLiteral("PRINT_STOPING")) == PrintPhase::Running);
    QVERIFY(printPhase(QStringLiteral("PRINT_STOPPING")) == PrintPhase::Unknown);
    QVERIFY(printPhase(QString()) == PrintPhase::Unknown);
}

QTEST_APPLESS_MAIN(TestTexts)

#include "tst_texts.moc"
