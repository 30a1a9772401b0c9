// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The payload of a data message.

#include "filetransfer.h"
#include "testprogram.h"

#include <QTest>
#include <QtEndian>

#include <limits>

class TestDataChunk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOneMebibyte();
    void unpacksAChunk_data();
    void unpacksAChunk();
    void unpacksUncompressedAsItIs();

    void unpacksDamagedPayloadsAsNothing_data();
    void unpacksDamagedPayloadsAsNothing();
    void takesTheSizePrefixAsAHintOnly();
    void unpacksNoMoreThanTheLimit();
    void advancesAnOffset_data();
    void advancesAnOffset();
};

void TestDataChunk::isOneMebibyte()
{
    QCOMPARE(zyws::chunkSize, 1048576);
}

void TestDataChunk::unpacksAChunk_data()
{
    QTest::addColumn<QByteArray>("chunk");
    QTest::newRow("one byte") << QByteArray(1, 'x');
    QTest::newRow("a short text") << QByteArrayLiteral("layers and layers and layers");
    QTest::newRow("a full chunk") << QByteArray(zyws::chunkSize, '\0');
    QByteArray mixed(zyws::chunkSize, Qt::Uninitialized);
    for (int i = 0; i < mixed.size(); ++i)
        mixed[i] = static_cast<char>((i * 2654435761U) >> 13);
    QTest::newRow("a full chunk that hardly deflates") << mixed;
}

void TestDataChunk::unpacksAChunk()
{
    QFETCH(QByteArray, chunk);
    QCOMPARE(zyws::unpackChunk(qCompress(chunk), true), chunk);
}

void TestDataChunk::unpacksUncompressedAsItIs()
{
    const QByteArray payload = qCompress("still packed");
    QCOMPARE(zyws::unpackChunk(payload, false), payload);
}

void TestDataChunk::unpacksDamagedPayloadsAsNothing_data()
{
    QTest::addColumn<QByteArray>("payload");
    const QByteArray good = qCompress(QByteArray(1000, 'x'));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("shorter than the prefix") << QByteArray(3, '\0');
    QTest::newRow("prefix only") << good.left(4);
    QTest::newRow("plain text") << QByteArrayLiteral("not a zlib stream at all");
    QTest::newRow("without the prefix") << good.mid(4);
    QTest::newRow("truncated") << good.left(good.size() - 5);
    QByteArray wrongSum = good;
    wrongSum[wrongSum.size() - 1] = static_cast<char>(wrongSum.back() ^ 1);
    QTest::newRow("wrong checksum") << wrongSum;
}

void TestDataChunk::unpacksDamagedPayloadsAsNothing()
{
    QFETCH(QByteArray, payload);
    QCOMPARE(zyws::unpackChunk(payload, true).size(), 0);
}

void TestDataChunk::takesTheSizePrefixAsAHintOnly()
{
    QByteArray payload = qCompress(QByteArray(5000, 'x'));
    qToBigEndian(quint32(1), payload.data());
    QCOMPARE(zyws::unpackChunk(payload, true), QByteArray(5000, 'x'));
}

void TestDataChunk::unpacksNoMoreThanTheLimit()
{
    const QByteArray zeros(1000, '\0');
    const QByteArray payload = qCompress(zeros);
    QCOMPARE(zyws::unpackChunkWithin(payload, true, 1000).value_or(QByteArray()), zeros);
    QVERIFY(!zyws::unpackChunkWithin(payload, true, 999));
    // Whatever the prefix says.
    for (const char prefix : {'\0', '\1', '\x7f', '\xff'}) {
        QByteArray lying = payload;
        lying.replace(0, 4, QByteArray(4, prefix));
        QCOMPARE(zyws::unpackChunkWithin(lying, true, 1000).value_or(QByteArray()), zeros);
        QVERIFY(!zyws::unpackChunkWithin(lying, true, 999));
    }
    QVERIFY(!zyws::unpackChunkWithin(payload.chopped(1), true, 1000));
    QVERIFY(!zyws::unpackChunkWithin({}, true, 1000));
    QCOMPARE(zyws::unpackChunkWithin(zeros, false, 1000).value_or(QByteArray()), zeros);
    QVERIFY(!zyws::unpackChunkWithin(zeros, false, 999));
}

void TestDataChunk::advancesAnOffset_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<qint64>("sum");
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    constexpr qint64 smallest = std::numeric_limits<qint64>::min();
    QTest::newRow("by a chunk") << Q_INT64_C(1048576) << Q_INT64_C(1048576) << Q_INT64_C(2097152);
    QTest::newRow("by nothing") << Q_INT64_C(7) << qint64(0) << Q_INT64_C(7);
    QTest::newRow("by a failed write") << Q_INT64_C(7) << Q_INT64_C(-1) << Q_INT64_C(6);
    QTest::newRow("beyond the largest") << largest << Q_INT64_C(1) << smallest;
    QTest::newRow("below the smallest") << smallest << Q_INT64_C(-1) << largest;
}

void TestDataChunk::advancesAnOffset()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, count);
    QTEST(zyws::advanced(offset, count), "sum");
}

ZY_TEST(TestDataChunk)
#include "tst_datachunk.moc"
