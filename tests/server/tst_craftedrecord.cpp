// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Temporary files that a peer has crafted: bounded memory, and no number is too odd.

#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QElapsedTimer>
#include <QTest>
#include <QtEndian>

#include <limits>

using namespace zytest;

namespace
{

const QString key = QStringLiteral("78563412");
const QString modelName = QStringLiteral("a.txt");

constexpr qint64 largest = std::numeric_limits<qint64>::max();
constexpr qint64 smallest = std::numeric_limits<qint64>::min();

QByteArray bigEndian(qint64 number)
{
    QByteArray bytes(8, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray textField(const QString &text)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(2 * text.size()), bytes.data());
    for (const QChar c : text)
        bytes.append(static_cast<char>(c.row())).append(static_cast<char>(c.cell()));
    return bytes;
}

QByteArray record(qint64 size, qint64 received)
{
    return bigEndian(size) + bigEndian(received) + textField(modelName) + textField(key);
}

/// A counter of /proc/self/status in KiB.
qint64 processCounter(const QByteArray &name)
{
    for (const QByteArray &line : readFile(QStringLiteral("/proc/self/status")).split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong();
    }
    return -1;
}

/// Starts the peak of resident memory anew.
bool resetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1;
}

} // namespace

class TestCraftedRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAnewWhenATextIsTooLong_data();
    void startsAnewWhenATextIsTooLong();
    void resumesALongNameWithinTheLimit();
    void startsAnewWhenTheNameLeavesNoRoomForTheKey();
    void takesAnyNumbers_data();
    void takesAnyNumbers();
    void countsOnFromAnyNumbers_data();
    void countsOnFromAnyNumbers();
};

void TestCraftedRecord::startsAnewWhenATextIsTooLong_data()
{
    QTest::addColumn<quint32>("length");
    QTest::newRow("2^24") << (1U << 24);
    QTest::newRow("2^30") << (1U << 30);
    QTest::newRow("2^31") << (1U << 31);
    QTest::newRow("largest even") << 0xfffffffeU;
}

void TestCraftedRecord::startsAnewWhenATextIsTooLong()
{
    QFETCH(quint32, length);
    TestPrinter printer;
    {
        QFile file(printer.temporaryFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QByteArray lengthField(4, Qt::Uninitialized);
        qToBigEndian(length, lengthField.data());
        file.write(QByteArray(10, 'x') + bigEndian(10) + bigEndian(5) + lengthField);
        file.close();
        // All the bytes that the length announces are there, at no cost for the disk.
        QVERIFY(file.resize(Q_INT64_C(100) + length));
    }
    RawPeer peer(printer.port());
    QVERIFY(peer.expectNothing());
    if (!resetPeakMemory())
        QSKIP("The peak of memory cannot be reset here");
    const qint64 before = processCounter("VmRSS");
    const QJsonObject request = startFile(modelName, 10);
    peer.send(request);
    QJsonObject expected = request;
    expected.insert(QStringLiteral("compress"), true);
    QCOMPARE(peer.take(), expected);
    // A literal reader would take at least the 16 MiB of the shortest text, twice.
    const qint64 grown = processCounter("VmHWM") - before;
    QVERIFY2(grown < 16 * 1024, qPrintable(QStringLiteral("grown by %1 KiB").arg(grown)));
}

void TestCraftedRecord::resumesALongNameWithinTheLimit()
{
    TestPrinter printer;
    const QString longName(1000, QLatin1Char('n'));
    writeFile(printer.temporaryFile(),
              QByteArray(4, 'x') + bigEndian(4) + bigEndian(2) + textField(longName)
                  + textField(key));
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    QCOMPARE(peer.take(),
             QJsonObject({{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                          {QStringLiteral("compress"), true},
                          {QStringLiteral("filename"), longName},
                          {QStringLiteral("key"), key},
                          {QStringLiteral("size"), QStringLiteral("4")},
                          {QStringLiteral("offset"), QStringLiteral("2")}}));
}

void TestCraftedRecord::startsAnewWhenTheNameLeavesNoRoomForTheKey()
{
    TestPrinter printer;
    const QString hugeName(1024 * 1024, QLatin1Char('n'));
    writeFile(printer.temporaryFile(),
              QByteArray(4, 'x') + bigEndian(4) + bigEndian(2) + textField(hugeName)
                  + textField(key));
    RawPeer peer(printer.port());
    QJsonObject request = startFile(modelName, 4);
    peer.send(request);
    request.insert(QStringLiteral("compress"), true);
    QCOMPARE(peer.take(), request);
}

static void addNumbers()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("received");
    const auto row = [](const char *name, qint64 size, qint64 received) {
        QTest::newRow(name) << size << received;
    };
    row("received is negative", 10, -1);
    row("received is the smallest", 10, smallest);
    row("received is the largest", 10, largest);
    row("size is negative", -1, 0);
    row("size is the smallest", smallest, 0);
    row("size is the largest", largest, 0);
    row("both are the largest", largest, largest);
    row("both are the smallest", smallest, smallest);
    row("nearly the largest", largest, largest - 3);
    row("received is more than size", 10, 11);
}

void TestCraftedRecord::takesAnyNumbers_data()
{
    addNumbers();
}

void TestCraftedRecord::takesAnyNumbers()
{
    QFETCH(qint64, size);
    QFETCH(qint64, received);
    TestPrinter printer;
    writeFile(printer.temporaryFile(), QByteArray(10, 'x') + record(size, received));
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("b.txt"), 10));
    QCOMPARE(peer.take(),
             QJsonObject({{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                          {QStringLiteral("compress"), true},
                          {QStringLiteral("filename"), modelName},
                          {QStringLiteral("key"), key},
                          {QStringLiteral("size"), QString::number(size)},
                          {QStringLiteral("offset"), QString::number(received)}}));
}

void TestCraftedRecord::countsOnFromAnyNumbers_data()
{
    addNumbers();
}

void TestCraftedRecord::countsOnFromAnyNumbers()
{
    QFETCH(qint64, size);
    QFETCH(qint64, received);
    TestPrinter printer;
    writeFile(printer.temporaryFile(), QByteArray(10, 'x') + record(size, received));
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 10));
    peer.take();
    // Any count will do, as long as each message is acknowledged and nothing comes to harm.
    for (int i = 0; i < 3 && printer.lastStatus() == 2; ++i) {
        peer.sendChunk("abcdef");
        const QJsonObject reply = peer.take();
        QCOMPARE(reply.value(QStringLiteral("cmd")), QJsonValue(QStringLiteral("START_DATA")));
        QCOMPARE(reply.value(QStringLiteral("size")), QJsonValue(QString::number(size)));
    }
    QVERIFY(peer.close());
    QVERIFY(printer.waitForConnections(0));
    RawPeer next(printer.port());
    next.send(QByteArrayLiteral(R"({"cmd":"CANCEL_FILE"})"));
    QCOMPARE(next.take(), json(R"({"cmd":"CANCEL_FILE","errorcode":0})"));
    QVERIFY(next.expectNothing());
}

ZY_TEST(TestCraftedRecord)
#include "tst_craftedrecord.moc"
