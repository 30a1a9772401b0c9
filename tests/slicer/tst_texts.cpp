// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What zyslicer computes and says without a printer: amounts, times, lines of progress.

#include "displaywidth.h"
#include "progressline.h"
#include "testprogram.h"
#include "wording.h"

#include <QTest>

using namespace zyslicer;

class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesAmountsInTheirUnit();
    void writesDurationsAsClocksDo();
    void roundsDownButNeverUpToTheWhole();
    void countsColumnsAsTerminalsDo();
    void fitsAnyWidth_data();
    void fitsAnyWidth();
    void dropsTheLeastImportantColumnFirst();
    void writesNoControlCharacterOfAPrinter();
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

void TestTexts::roundsDownButNeverUpToTheWhole()
{
    for (int i = 0; i <= 100; ++i)
        QCOMPARE(percentOf(i / 100.0), i);
    QCOMPARE(percentOf(0.999999999999), 99);
    QCOMPARE(percentOf(699.0 / 700), 99);
    QCOMPARE(byteText(41943039, 41943040), QStringLiteral("39.9/40.0 MiB"));
    QCOMPARE(byteText(41943040, 41943040), QStringLiteral("40.0/40.0 MiB"));
}

void TestTexts::countsColumnsAsTerminalsDo()
{
    QCOMPARE(zyapp::displayWidth(QStringLiteral("part.zydlp")), 10);
    QCOMPARE(zyapp::displayWidth(QString::fromUtf8("\346\250\241\345\236\213")), 4); // CJK
    QCOMPARE(zyapp::displayWidth(QString::fromUtf8("\360\237\246\204")), 2); // an emoji
    QCOMPARE(zyapp::displayWidth(QString::fromUtf8("\342\235\244\357\270\217")),
             2); // and its selector
    QCOMPARE(zyapp::displayWidth(QString::fromUtf8("e\314\201")), 1); // a combining accent
    // No half characters.
    QCOMPARE(zyapp::clipped(QString::fromUtf8("a\360\237\246\204b"), 2), QStringLiteral("a"));
    QCOMPARE(zyapp::elided(QString::fromUtf8("\346\250\241\345\236\213"), 3),
             QString::fromUtf8("\346\250\241\342\200\246"));
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
    QTest::newRow("wide label") << QString(30, QChar(0x6a21)) << 0.3;
    QTest::newRow("emoji") << QString::fromUtf8("\360\237\246\204.zydlp").repeated(5) << 0.3;
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
        QVERIFY2(zyapp::displayWidth(progressLine(row, width)) <= width,
                 qPrintable(progressLine(row, width)));
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

void TestTexts::writesNoControlCharacterOfAPrinter()
{
    const ProgressRow row{QStringLiteral("a\u001bb"), -1, {QStringLiteral("1\u001b]0;x\u0007\n")}};
    QCOMPARE(progressLine(row, 100), QStringLiteral("a?b  1?]0;x??"));
}

ZY_TEST(TestTexts)

#include "tst_texts.moc"
