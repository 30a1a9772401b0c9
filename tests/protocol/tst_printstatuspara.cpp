// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print status record: defaults and copying.

#include "printstatuspara.h"
#include "testprogram.h"

#include <QTest>

#include <algorithm>
#include <functional>
#include <type_traits>

static_assert(!std::is_polymorphic_v<PrintStatusPara>, "a plain value");

using Field = QString PrintStatusPara::*;
Q_DECLARE_METATYPE(Field)

class TestPrintStatusPara : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithEmptyTexts_data();
    void startsWithEmptyTexts();
    void startsWithStatusZero();
    void copiesEveryText_data();
    void copiesEveryText();
    void copiesTheStatus();
    void keepsTheFirstWhenACopyIsChanged_data();
    void keepsTheFirstWhenACopyIsChanged();
    void declaresItsFieldsInOrder();
};

namespace
{

void addFields()
{
    QTest::addColumn<Field>("field");
    QTest::newRow("filename") << &PrintStatusPara::filename;
    QTest::newRow("sliceLayerCount") << &PrintStatusPara::sliceLayerCount;
    QTest::newRow("curSliceLayer") << &PrintStatusPara::curSliceLayer;
    QTest::newRow("printRemainTime") << &PrintStatusPara::printRemainTime;
    QTest::newRow("initExposure") << &PrintStatusPara::initExposure;
    QTest::newRow("delayLight") << &PrintStatusPara::delayLight;
    QTest::newRow("printExposure") << &PrintStatusPara::printExposure;
    QTest::newRow("printHeight") << &PrintStatusPara::printHeight;
    QTest::newRow("eleSpeed") << &PrintStatusPara::eleSpeed;
    QTest::newRow("bottomExposureNum") << &PrintStatusPara::bottomExposureNum;
    QTest::newRow("layerThickness") << &PrintStatusPara::layerThickness;
    QTest::newRow("resin") << &PrintStatusPara::resin;
}

} // namespace

void TestPrintStatusPara::startsWithEmptyTexts_data()
{
    addFields();
}

void TestPrintStatusPara::startsWithEmptyTexts()
{
    QFETCH(Field, field);
    const PrintStatusPara record;
    QVERIFY((record.*field).isEmpty());
    QVERIFY(!(record.*field).isNull());
}

void TestPrintStatusPara::startsWithStatusZero()
{
    QCOMPARE(PrintStatusPara().printStatus, 0);
}

void TestPrintStatusPara::copiesEveryText_data()
{
    addFields();
}

void TestPrintStatusPara::copiesEveryText()
{
    QFETCH(Field, field);
    PrintStatusPara record;
    record.*field = QStringLiteral("120");
    const PrintStatusPara copy(record);
    QCOMPARE(copy.*field, QStringLiteral("120"));
    PrintStatusPara assigned;
    assigned.*field = QStringLiteral("overwritten");
    assigned = record;
    QCOMPARE(assigned.*field, QStringLiteral("120"));
}

void TestPrintStatusPara::copiesTheStatus()
{
    PrintStatusPara record;
    record.printStatus = 8;
    QCOMPARE(PrintStatusPara(record).printStatus, 8);
    PrintStatusPara assigned;
    assigned = record;
    QCOMPARE(assigned.printStatus, 8);
}

void TestPrintStatusPara::keepsTheFirstWhenACopyIsChanged_data()
{
    addFields();
}

void TestPrintStatusPara::keepsTheFirstWhenACopyIsChanged()
{
    QFETCH(Field, field);
    PrintStatusPara record;
    record.*field = QStringLiteral("first");
    PrintStatusPara copy(record);
    (copy.*field).append(QStringLiteral(", changed"));
    QCOMPARE(record.*field, QStringLiteral("first"));
    QCOMPARE(copy.*field, QStringLiteral("first, changed"));
}

void TestPrintStatusPara::declaresItsFieldsInOrder()
{
    const PrintStatusPara record;
    const QList<const void *> addresses{
        &record.filename,          &record.sliceLayerCount, &record.curSliceLayer,
        &record.printRemainTime,   &record.initExposure,    &record.delayLight,
        &record.printExposure,     &record.printHeight,     &record.eleSpeed,
        &record.bottomExposureNum, &record.layerThickness,  &record.resin,
        &record.printStatus,
    };
    QVERIFY(std::is_sorted(addresses.begin(), addresses.end(), std::less<const void *>()));
    QCOMPARE(addresses.first(), static_cast<const void *>(&record));
}

ZY_TEST(TestPrintStatusPara)
#include "tst_printstatuspara.moc"
