// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The resume record, byte by byte.

#include "filetransfer.h"
#include "testprogram.h"

#include <QTest>

#include <limits>

using zyws::packResumeRecord;
using zyws::ResumeRecord;
using zyws::unpackResumeRecord;

namespace
{

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

/// size 2,000,000, received 1,048,576, filename a.zydlp, key 78563412.
QByteArray exampleBytes()
{
    return hex("00000000001e8480 0000000000100000"
               "0000000e 0061 002e 007a 0079 0064 006c 0070"
               "00000010 0037 0038 0035 0036 0033 0034 0031 0032");
}

} // namespace

class TestResumeRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheExampleToTheByte();
    void readsTheExample();
    void writesTexts_data();
    void writesTexts();
    void readsBackWhatItWrote_data();
    void readsBackWhatItWrote();
    void ignoresWhatFollowsTheRecord();

    void readsMissingFieldsAsZeroAndEmpty_data();
    void readsMissingFieldsAsZeroAndEmpty();
    void readsAnImpossibleTextLengthAsEmpty_data();
    void readsAnImpossibleTextLengthAsEmpty();
    void knowsAWholeRecord();
};

void TestResumeRecord::writesTheExampleToTheByte()
{
    const QByteArray bytes = packResumeRecord(
        {2000000, 1048576, QStringLiteral("a.zydlp"), QStringLiteral("78563412")});
    QCOMPARE(bytes.toHex(), exampleBytes().toHex());
    QCOMPARE(bytes.size(), 54);
}

void TestResumeRecord::readsTheExample()
{
    const ResumeRecord record = unpackResumeRecord(exampleBytes());
    QCOMPARE(record.size, 2000000);
    QCOMPARE(record.received, 1048576);
    QCOMPARE(record.filename, QStringLiteral("a.zydlp"));
    QCOMPARE(record.key, QStringLiteral("78563412"));
}

void TestResumeRecord::writesTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("encoded");
    QTest::newRow("null") << QString() << hex("ffffffff");
    QTest::newRow("empty") << QStringLiteral("") << hex("00000000");
    QTest::newRow("umlaut") << QStringLiteral("\u00e4") << hex("00000002 00e4");
    QTest::newRow("outside the basic plane")
        << QStringLiteral("\U0001f5a8") << hex("00000004 d83d dda8");
}

void TestResumeRecord::writesTexts()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, encoded);
    const QByteArray expected = hex("0000000000000001 0000000000000000") + encoded + encoded;
    QCOMPARE(packResumeRecord({1, 0, text, text}).toHex(), expected.toHex());
}

void TestResumeRecord::readsBackWhatItWrote_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("received");
    QTest::newRow("zero") << qint64(0) << qint64(0);
    QTest::newRow("more than 32 bits") << Q_INT64_C(6000000000) << Q_INT64_C(5000000000);
    QTest::newRow("negative") << Q_INT64_C(-1) << Q_INT64_C(-2);
    QTest::newRow("extremes") << std::numeric_limits<qint64>::max()
                              << std::numeric_limits<qint64>::min();
}

void TestResumeRecord::readsBackWhatItWrote()
{
    QFETCH(qint64, size);
    QFETCH(qint64, received);
    const QString name = QStringLiteral("dir/\u6a21\u578b.zyline");
    const ResumeRecord record
        = unpackResumeRecord(packResumeRecord({size, received, name, QStringLiteral("0")}));
    QCOMPARE(record.size, size);
    QCOMPARE(record.received, received);
    QCOMPARE(record.filename, name);
    QCOMPARE(record.key, QStringLiteral("0"));
}

void TestResumeRecord::ignoresWhatFollowsTheRecord()
{
    const ResumeRecord record = unpackResumeRecord(exampleBytes() + QByteArray(1000, '\xff'));
    QCOMPARE(record.key, QStringLiteral("78563412"));
}

void TestResumeRecord::readsMissingFieldsAsZeroAndEmpty_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("received");
    QTest::addColumn<QString>("filename");
    const qint64 size = 2000000;
    const qint64 received = 1048576;
    const QString name = QStringLiteral("a.zydlp");
    QTest::newRow("nothing") << 0 << qint64(0) << qint64(0) << QString();
    QTest::newRow("half a size") << 4 << qint64(0) << qint64(0) << QString();
    QTest::newRow("size only") << 8 << size << qint64(0) << QString();
    QTest::newRow("half a count") << 12 << size << qint64(0) << QString();
    QTest::newRow("numbers only") << 16 << size << received << QString();
    QTest::newRow("half a length") << 18 << size << received << QString();
    QTest::newRow("half a name") << 25 << size << received << QString();
    QTest::newRow("no key") << 34 << size << received << name;
    QTest::newRow("key without its last byte") << 53 << size << received << name;
}

void TestResumeRecord::readsMissingFieldsAsZeroAndEmpty()
{
    QFETCH(int, bytes);
    const ResumeRecord record = unpackResumeRecord(exampleBytes().left(bytes));
    QTEST(record.size, "size");
    QTEST(record.received, "received");
    QTEST(record.filename, "filename");
    QCOMPARE(record.key, QString());
}

void TestResumeRecord::readsAnImpossibleTextLengthAsEmpty_data()
{
    QTest::addColumn<QByteArray>("length");
    QTest::newRow("odd") << hex("00000007");
    QTest::newRow("longer than the bytes") << hex("00010000");
    QTest::newRow("2^30") << hex("40000000");
    QTest::newRow("2^31") << hex("80000000");
    QTest::newRow("largest even") << hex("fffffffe");
}

void TestResumeRecord::readsAnImpossibleTextLengthAsEmpty()
{
    QFETCH(QByteArray, length);
    QByteArray bytes = exampleBytes();
    bytes.replace(16, 4, length);
    const ResumeRecord record = unpackResumeRecord(bytes);
    QCOMPARE(record.filename, QString());
    QCOMPARE(record.key, QString());
}

void TestResumeRecord::knowsAWholeRecord()
{
    const QString key = QStringLiteral("78563412");
    const auto packed = [&](qint64 size, qint64 received) {
        return packResumeRecord({size, received, QStringLiteral("a"), key});
    };
    QVERIFY(zyws::isWholeRecord(packed(10, 0), 10, key));
    QVERIFY(zyws::isWholeRecord(packed(10, 10), 10, key));
    QVERIFY(!zyws::isWholeRecord(packed(10, 11), 10, key));
    QVERIFY(!zyws::isWholeRecord(packed(10, -1), 10, key));
    QVERIFY(!zyws::isWholeRecord(packed(11, 5), 10, key));
    QVERIFY(!zyws::isWholeRecord(packed(10, 5), 10, QStringLiteral("7856341")));
    QVERIFY(!zyws::isWholeRecord(packed(10, 5) + '\0', 10, key));
    QVERIFY(!zyws::isWholeRecord(packed(10, 5).chopped(1), 10, key));
    QVERIFY(!zyws::isWholeRecord({}, 0, {}));
}

ZY_TEST(TestResumeRecord)
#include "tst_resumerecord.moc"
