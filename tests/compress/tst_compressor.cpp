// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The payload of a compressed chunk, at zlib's levels and at the rungs.

#include "compressor.h"
#include "modelfiles.h"
#include "testprogram.h"

#include <QTest>
#include <QtEndian>

using zyws::compressed;
using zyws::Effort;

class TestCompressor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compressesAByteToTheByte();
    void givesTheBytesOfQCompressAtALevel_data();
    void givesTheBytesOfQCompressAtALevel();
    void inflatesWithQtFromEveryRung_data();
    void inflatesWithQtFromEveryRung();
    void becomesSmallerRungByRung();
    void storesWhatDoesNotShrink();
};

namespace
{

constexpr int chunk = 1024 * 1024;

/// Some contents as the slicer sends them, tagged.
QVector<QPair<const char *, QByteArray>> contents()
{
    return {
        {"one byte", "x"},
        {"a short text", "layers and layers and layers"},
        {"zeros", QByteArray(chunk, '\0')},
        {"runs", zytest::compressibleBytes(chunk)},
        {"a bit less than a chunk", zytest::compressibleBytes(chunk - 1)},
        {"random bytes", zytest::randomBytes(chunk)},
    };
}

} // namespace

void TestCompressor::compressesAByteToTheByte()
{
    // Length 1, zlib header of the default level, one fixed block, checksum.
    QCOMPARE(compressed("A", {Effort::ZlibLevel, -1}).toHex(),
             QByteArrayLiteral("00000001789c73040000420042"));
}

void TestCompressor::givesTheBytesOfQCompressAtALevel_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("level");
    for (const auto &[name, bytes] : contents()) {
        for (const int level : {-1, 0, 1, 9, 10})
            QTest::addRow("%s, level %d", name, level) << bytes << level;
    }
}

void TestCompressor::givesTheBytesOfQCompressAtALevel()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, level);
    QVERIFY(compressed(bytes, {Effort::ZlibLevel, level}) == qCompress(bytes, level));
}

void TestCompressor::inflatesWithQtFromEveryRung_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("rung");
    for (const auto &[name, bytes] : contents()) {
        for (int rung = 0; rung < zyws::rungCount; ++rung)
            QTest::addRow("%s, rung %d", name, rung) << bytes << rung;
    }
}

void TestCompressor::inflatesWithQtFromEveryRung()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, rung);
    const QByteArray payload = compressed(bytes, {Effort::Rung, rung});
    QCOMPARE(qFromBigEndian<quint32>(payload.constData()), static_cast<quint32>(bytes.size()));
    QVERIFY(qUncompress(payload) == bytes);
}

void TestCompressor::becomesSmallerRungByRung()
{
    // Text of a small vocabulary: each further search for a match pays.
    QByteArray text;
    quint32 state = 1;
    while (text.size() < chunk) {
        state = state * 1664525U + 1013904223U;
        text += "G1 X" + QByteArray::number(state >> 25) + " Y" + QByteArray::number(state >> 22);
    }
    qsizetype before = text.size() + 1000;
    for (int rung = 0; rung < zyws::rungCount; ++rung) {
        const auto size = compressed(text, {Effort::Rung, rung}).size();
        QVERIFY2(size < before, qPrintable(QStringLiteral("rung %1: %2").arg(rung).arg(size)));
        before = size;
    }
}

void TestCompressor::storesWhatDoesNotShrink()
{
    const QByteArray bytes = zytest::randomBytes(chunk);
    for (int rung = 0; rung < zyws::rungCount; ++rung) {
        // Five bytes for each block of at most 64 KiB, of which zlib fills half.
        const auto size = compressed(bytes, {Effort::Rung, rung}).size();
        QVERIFY2(size <= bytes.size() + 400, qPrintable(QString::number(size)));
    }
}

ZY_TEST(TestCompressor)
#include "tst_compressor.moc"
