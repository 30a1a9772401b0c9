// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The inflater gives what qUncompress() gives, whichever library it was built with, but for a few
// malformed streams.

#include "filetransfer.h"
#include "inflate.h"
#include "testprogram.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QtEndian>

#include <utility>

namespace
{

using Inflate = QByteArray (*)(const QByteArray &);

QByteArray qtInflated(const QByteArray &payload)
{
    return qUncompress(payload);
}

struct Outcome {
    QByteArray bytes;
    bool isNull;
    QStringList warnings;

    bool operator==(const Outcome &other) const
    {
        return bytes == other.bytes && isNull == other.isNull && warnings == other.warnings;
    }
};

QStringList seenWarnings;

Outcome outcomeOf(Inflate inflate, const QByteArray &payload)
{
    // Not passed on: there are thousands, on purpose.
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { seenWarnings += text; });
    const QByteArray bytes = inflate(payload);
    qInstallMessageHandler(before);
    return {bytes, bytes.isNull(), std::exchange(seenWarnings, {})};
}

bool agrees(const QByteArray &payload)
{
    if (outcomeOf(zyws::inflated, payload) == outcomeOf(qtInflated, payload))
        return true;
    qWarning("disagrees on %s", payload.toHex().constData());
    return false;
}

/// Bytes with few repetitions and an uneven spread: much work for a Huffman code.
QByteArray unevenBytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char &byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>((state >> 24) & (state >> 16) & 0xFF);
    }
    return bytes;
}

QByteArray layers(int size)
{
    QByteArray bytes;
    for (int row = 0; bytes.size() < size; ++row)
        bytes += QByteArray(300 + row % 50, '\0') + QByteArray(40 + row % 7, '\xFF') + char(row);
    return bytes.left(size);
}

QByteArray stored(const QByteArray &bytes)
{
    return qCompress(bytes, 0);
}

/// One small payload of each kind of block.
void addSmallPayloads()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("a stored block") << stored("stored as it is");
    QTest::newRow("a fixed code") << qCompress("a layer, a layer and another layer; a layer");
    QTest::newRow("codes of its own") << qCompress(unevenBytes(180) + layers(2000));
}

QByteArray withoutPrefix(const QByteArray &payload)
{
    return payload.mid(4);
}

} // namespace

class TestInflate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inflatesChunks_data();
    void inflatesChunks();

    void readsTheSeedsAsQtDoes_data();
    void readsTheSeedsAsQtDoes();
    void readsAReservedSymbolThatQtRefuses();
    void takesTheAnnouncedSizeAsQtDoes_data();
    void takesTheAnnouncedSizeAsQtDoes();
    void readsTruncatedPayloadsAsQtDoes_data() { addSmallPayloads(); }
    void readsTruncatedPayloadsAsQtDoes();
    void readsFlippedBitsAsQtDoesOrAsIfSound_data() { addSmallPayloads(); }
    void readsFlippedBitsAsQtDoesOrAsIfSound();
};

void TestInflate::inflatesChunks_data()
{
    QTest::addColumn<QByteArray>("chunk");
    QTest::addColumn<int>("level");
    const QVector<QPair<const char *, QByteArray>> chunks{
        {"one byte", "x"},
        {"a short text", "layers and layers and layers"},
        {"zeros", QByteArray(zyws::chunkSize, '\0')},
        {"layers", layers(zyws::chunkSize)},
        {"uneven bytes", unevenBytes(zyws::chunkSize)},
        {"a bit more than a chunk", layers(zyws::chunkSize + 1)},
    };
    for (const auto &[name, chunk] : chunks) {
        for (const int level : {-1, 0, 1, 9})
            QTest::addRow("%s, level %d", name, level) << chunk << level;
    }
}

void TestInflate::inflatesChunks()
{
    QFETCH(QByteArray, chunk);
    QFETCH(int, level);
    const Outcome outcome = outcomeOf(zyws::inflated, qCompress(chunk, level));
    QVERIFY(outcome.bytes == chunk);
    QCOMPARE(outcome.warnings, QStringList());
}

void TestInflate::readsTheSeedsAsQtDoes_data()
{
    QTest::addColumn<QByteArray>("payload");
    const QDir corpus(QStringLiteral(ZYTEST_INFLATE_CORPUS));
    QStringList names = corpus.entryList(QDir::Files);
    QVERIFY(names.removeOne(QStringLiteral("refused_by_zlib_alone")));
    QVERIFY(!names.isEmpty());
    for (const QString &name : std::as_const(names)) {
        QFile file(corpus.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::newRow(qPrintable(name)) << file.readAll();
    }
}

void TestInflate::readsTheSeedsAsQtDoes()
{
    QFETCH(QByteArray, payload);
    QVERIFY(agrees(payload));
}

void TestInflate::readsAReservedSymbolThatQtRefuses()
{
    // "A", then a match of the reserved length symbol 286, under a right checksum.
    const QByteArray payload = QByteArray::fromHex("00000103 789c 731c0300 67f841c4");
    QVERIFY(outcomeOf(qtInflated, payload).isNull);
#ifdef ZYTEST_WITH_LIBDEFLATE
    QCOMPARE(zyws::inflated(payload), QByteArray(259, 'A'));
#else
    QVERIFY(agrees(payload));
#endif
}

void TestInflate::takesTheAnnouncedSizeAsQtDoes_data()
{
    QTest::addColumn<QByteArray>("payload");
    const auto announce = [](quint32 size, const QByteArray &payload) {
        QByteArray prefix(4, Qt::Uninitialized);
        qToBigEndian(size, prefix.data());
        return prefix + withoutPrefix(payload);
    };
    const QByteArray layer = qCompress(layers(5000));
    QTest::newRow("none") << announce(0, layer);
    QTest::newRow("one byte") << announce(1, layer);
    QTest::newRow("one byte too few") << announce(4999, layer);
    QTest::newRow("one byte too many") << announce(5001, layer);
    QTest::newRow("a chunk") << announce(quint32(zyws::chunkSize), layer);
    QTest::newRow("more than a chunk") << announce(quint32(zyws::chunkSize) + 1, layer);
    QTest::newRow("more than Qt allocates") << announce(0xFFFFFFFF, layer);
    QTest::newRow("nothing, rightly") << announce(0, qCompress(QByteArray()));
    QTest::newRow("half of a chunk")
        << announce(quint32(zyws::chunkSize) / 2, qCompress(layers(zyws::chunkSize)));
    QTest::newRow("of nothing") << announce(1, stored(QByteArray()));
    QTest::newRow("the prefix alone") << announce(1, QByteArray());
    QTest::newRow("before a trailing byte") << layer + 'x';
    QTest::newRow("before the stream once more") << layer + withoutPrefix(layer);
    QTest::newRow("no payload") << QByteArray();
    QTest::newRow("an empty payload") << QByteArray("");
}

void TestInflate::takesTheAnnouncedSizeAsQtDoes()
{
    QFETCH(QByteArray, payload);
    QVERIFY(agrees(payload));
}

void TestInflate::readsTruncatedPayloadsAsQtDoes()
{
    QFETCH(QByteArray, payload);
    for (int size = 0; size <= payload.size(); ++size)
        QVERIFY2(agrees(payload.left(size)), qPrintable(QString::number(size)));
}

void TestInflate::readsFlippedBitsAsQtDoesOrAsIfSound()
{
    QFETCH(QByteArray, payload);
    const QByteArray sound = qUncompress(payload);
    // The announced size has a test of its own: Qt reserves what it says, gigabytes of it.
    for (int bit = 4 * 8; bit < payload.size() * 8; ++bit) {
        QByteArray flipped = payload;
        flipped[bit / 8] = static_cast<char>(flipped.at(bit / 8) ^ (1 << bit % 8));
        // A code with a single symbol leaves one bit value without a meaning. zlib refuses it.
        const bool isReadAsSound = outcomeOf(zyws::inflated, flipped).bytes == sound;
        QVERIFY2(isReadAsSound || agrees(flipped), qPrintable(QString::number(bit)));
    }
}

ZY_TEST(TestInflate)
#include "tst_inflate.moc"
