// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// SHA-256 against the standard's examples, with either implementation.

#include "sha256.h"
#include "testprogram.h"

#include <QTest>

class TestSha256 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void digestsTheStandardsExamples();
    void digestsPiecesAsTheWhole();
};

void TestSha256::digestsTheStandardsExamples()
{
    zyws::Sha256 hash;
    QCOMPARE(hash.hexResult(),
             QByteArrayLiteral("e3b0c44298fc1c149afbf4c8996fb924"
                               "27ae41e4649b934ca495991b7852b855"));
    hash.reset();
    hash.add("abc");
    QCOMPARE(hash.hexResult(),
             QByteArrayLiteral("ba7816bf8f01cfea414140de5dae2223"
                               "b00361a396177a9cb410ff61f20015ad"));
    hash.reset();
    hash.add("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq");
    QCOMPARE(hash.hexResult(),
             QByteArrayLiteral("248d6a61d20638b8e5c026930c3e6039"
                               "a33ce45964ff2167f6ecedd419db06c1"));
}

void TestSha256::digestsPiecesAsTheWhole()
{
    zyws::Sha256 hash;
    for (int i = 0; i < 1000; ++i)
        hash.add(QByteArray(1000, 'a'));
    QCOMPARE(hash.hexResult(),
             QByteArrayLiteral("cdc76e5c9914fb9281a1c7e284d73e67"
                               "f1809a48a497200e046d39ccc7112cd0"));
}

ZY_TEST(TestSha256)
#include "tst_sha256.moc"
