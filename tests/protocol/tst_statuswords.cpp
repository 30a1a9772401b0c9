// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The words for result codes and printer states.

#include "statuswords.h"

#include <QtTest>

#include <limits>

class tst_StatusWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesCommandResults_data();
    void namesCommandResults();
    void namesPrinterStates_data();
    void namesPrinterStates();
};

void tst_StatusWords::namesCommandResults_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("word");
    QTest::newRow("6") << 6 << QStringLiteral("TOKEN_ERROR");
    QTest::newRow("7") << 7 << QStringLiteral("CMD_SUCCES");
    QTest::newRow("8") << 8 << QStringLiteral("CMD_FAIL");
    for (const int code : {0, 1, 2, 3, 4, 5, 9, -1, 6 + 256, std::numeric_limits<int>::min(),
                           std::numeric_limits<int>::max()})
        QTest::addRow("%d", code) << code << QString();
}

void tst_StatusWords::namesCommandResults()
{
    QFETCH(int, code);
    QTEST(zyws::commandResultWord(code), "word");
}

void tst_StatusWords::namesPrinterStates_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("word");
    const QStringList words{
        QStringLiteral("PRINT_GENERAL"),  QStringLiteral("PRINT_PROCESSING"),
        QStringLiteral("PRINT_COMPLETE"), QStringLiteral("PRINT_FAIL"),
        QStringLiteral("PRINT_END"),      QStringLiteral("PRINT_STOP"),
        QStringLiteral("PRINT_STOPING"),  QStringLiteral("PRINT_COMPLETING"),
        QStringLiteral("TOKEN_ERROR"),
    };
    for (int code = 0; code < words.size(); ++code)
        QTest::addRow("%d", code) << code << words.at(code);
    for (const int code :
         {-1, 9, 256, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d", code) << code << QString();
}

void tst_StatusWords::namesPrinterStates()
{
    QFETCH(int, code);
    QTEST(zyws::printStatusWord(code), "word");
}

QTEST_GUILESS_MAIN(tst_StatusWords)
#include "tst_statuswords.moc"
