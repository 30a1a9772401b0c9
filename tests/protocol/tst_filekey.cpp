// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file key, as both ends compute it.

#include "filetransfer.h"
#include "testprogram.h"

#include <QTest>

class TestFileKey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isMadeFromTheLastBytes_data();
    void isMadeFromTheLastBytes();
    void ignoresAllButTheLastFourOfEight();
};

void TestFileKey::isMadeFromTheLastBytes_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<QString>("key");
    const auto row = [](const char *name, const char *tail, const char *key) {
        QTest::newRow(name) << QByteArray::fromHex(tail) << QString::fromLatin1(key);
    };
    row("ends in 12 34 56 78", "aabbccdd 12345678", "78563412");
    row("ends in 01 00 00 ff", "aabbccdd 010000ff", "ffffffffff000001");
    row("ends in 00 00 00 80", "aabbccdd 00000080", "ffffffff80000000");
    row("ends in 00 00 00 7f", "aabbccdd 0000007f", "7f000000");
    row("ends in ff ff ff 7f", "aabbccdd ffffff7f", "7fffffff");
    row("ends in ff ff ff ff", "aabbccdd ffffffff", "ffffffffffffffff");
    row("letters are lower case", "00000000 efcdab0e", "eabcdef");
    row("no leading zeros", "aabbccdd 05000000", "5");
    row("ends in zeros", "aabbccdd 00000000", "0");
    row("empty file", "", "0");
    row("one byte", "ff", "0");
    row("four bytes", "12345678", "0");
    row("five bytes", "12345678 9a", "9a");
    row("six bytes", "12345678 9abc", "bc9a");
    row("seven bytes", "12345678 9abcde", "debc9a");
    row("seven bytes are never negative", "12345678 ffffff", "ffffff");
}

void TestFileKey::isMadeFromTheLastBytes()
{
    QFETCH(QByteArray, tail);
    QTEST(zyws::fileKey(tail), "key");
}

void TestFileKey::ignoresAllButTheLastFourOfEight()
{
    QCOMPARE(zyws::fileKey("????abcd"), zyws::fileKey("!!!!abcd"));
    QVERIFY(zyws::fileKey("????abcd") != zyws::fileKey("????abce"));
    QCOMPARE(zyws::fileKeyTail, 8);
}

ZY_TEST(TestFileKey)
#include "tst_filekey.moc"
