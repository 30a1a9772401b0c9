// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which zlib streams are left to libdeflate: all of the usual kind, none that zlib refuses.

#include "datachunk.h"
#include "zlibstream.h"

#include <QFile>
#include <QtTest>

namespace
{

QByteArray streamOf(const QByteArray &payload)
{
    return payload.mid(4); // behind the announced size
}

QByteArray corpusStream(const char *name)
{
    QFile file(QStringLiteral(ZYTEST_INFLATE_CORPUS "/") + QString::fromLatin1(name));
    return file.open(QIODevice::ReadOnly) ? streamOf(file.readAll()) : QByteArray();
}

bool isPlain(const QByteArray &stream)
{
    return zyws::isPlainZlibStream(reinterpret_cast<const uchar *>(stream.constData()),
                                   stream.size());
}

} // namespace

class tst_ZlibStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPlainFromACompressor_data();
    void isPlainFromACompressor();
    void isPlainInEachKindOfBlock_data();
    void isPlainInEachKindOfBlock();

    void isNotPlainWhereInflatersDisagree_data();
    void isNotPlainWhereInflatersDisagree();
    void isNotPlainWhenTruncated();
};

void tst_ZlibStream::isPlainFromACompressor_data()
{
    QTest::addColumn<QByteArray>("chunk");
    QByteArray growing;
    for (int length = 1; growing.size() < zyws::chunkSize; length += 3)
        growing += QByteArray(length % 1000, static_cast<char>(length));
    QByteArray uneven(zyws::chunkSize, Qt::Uninitialized);
    // The third power has short codes, long ones up to 15 bits and everything between.
    quint32 state = 1;
    for (char &byte : uneven) {
        state = state * 1664525U + 1013904223U;
        const quint64 value = state >> 16;
        byte = static_cast<char>(value * value * value >> 40);
    }
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("zeros") << QByteArray(zyws::chunkSize, '\0');
    QTest::newRow("runs of all lengths") << growing.left(zyws::chunkSize);
    QTest::newRow("uneven bytes") << uneven;
    QTest::newRow("runs and uneven bytes") << growing.left(500000) + uneven.left(500000);
}

void tst_ZlibStream::isPlainFromACompressor()
{
    QFETCH(QByteArray, chunk);
    for (const int level : {-1, 0, 1, 6, 9})
        QVERIFY2(isPlain(streamOf(qCompress(chunk, level))), qPrintable(QString::number(level)));
}

void tst_ZlibStream::isPlainInEachKindOfBlock_data()
{
    QTest::addColumn<QByteArray>("stream");
    for (const char *name : {"stored", "fixed_block", "mixed", "flushed_blocks", "long_codes"})
        QTest::newRow(name) << corpusStream(name);
}

void tst_ZlibStream::isPlainInEachKindOfBlock()
{
    QFETCH(QByteArray, stream);
    QVERIFY(isPlain(stream));
}

void tst_ZlibStream::isNotPlainWhereInflatersDisagree_data()
{
    QTest::addColumn<QByteArray>("stream");
    for (const char *name : {"length_symbol_286",
                             "length_symbol_287",
                             "distance_symbol_30",
                             "distance_symbol_31",
                             "literal_symbols_288",
                             "distance_symbols_32",
                             "incomplete_length_code",
                             "lone_end_of_block_other_bit",
                             "lone_distance_code_other_bit",
                             "match_without_distance_code",
                             "lengths_run_over",
                             "oversubscribed_code",
                             "no_end_of_block",
                             "reserved_block_type",
                             "stored_length_wrong",
                             "small_window",
                             "dictionary",
                             "header_check_wrong",
                             "trailing_byte",
                             "endless_blocks"})
        QTest::newRow(name) << corpusStream(name);
}

void tst_ZlibStream::isNotPlainWhereInflatersDisagree()
{
    QFETCH(QByteArray, stream);
    QVERIFY(!stream.isEmpty());
    QVERIFY(!isPlain(stream));
}

void tst_ZlibStream::isNotPlainWhenTruncated()
{
    const QByteArray stream = corpusStream("mixed");
    QVERIFY(isPlain(stream));
    for (int size = 0; size < stream.size(); ++size)
        QVERIFY2(!isPlain(stream.left(size)), qPrintable(QString::number(size)));
}

QTEST_GUILESS_MAIN(tst_ZlibStream)
#include "tst_zlibstream.moc"
