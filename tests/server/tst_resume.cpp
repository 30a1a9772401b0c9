// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Interrupted transfers: the record in the temporary file, and the transfer that finds it.

#include "logcapture.h"
#include "memberaccess.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

using namespace zytest;

namespace
{

const QString modelName = QStringLiteral("a.zydlp");
const QString temporaryName = QStringLiteral("wifi_tranfer.tmp");

/// The bytes of a record, spelled out for names and keys in Latin-1.
QByteArray record(qint64 size, qint64 received, const QString &name, const QString &key)
{
    QByteArray bytes;
    for (const qint64 number : {size, received}) {
        for (int shift = 56; shift >= 0; shift -= 8)
            bytes.append(static_cast<char>(number >> shift));
    }
    for (const QString &text : {name, key}) {
        bytes.append(3, '\0').append(static_cast<char>(2 * text.size()));
        for (const QChar c : text)
            bytes.append('\0').append(c.toLatin1());
    }
    return bytes;
}

QJsonObject resumed(const QString &name, qint64 size, qint64 offset, const QString &key)
{
    QJsonObject reply = startFile(name, size, key);
    reply.insert(QStringLiteral("offset"), QString::number(offset));
    reply.insert(QStringLiteral("compress"), true);
    return reply;
}

/// A new transfer after a record that did not match: the reply without "errorcode".
QJsonObject startedAnew(const QJsonObject &request)
{
    QJsonObject reply = request;
    reply.insert(QStringLiteral("compress"), true);
    return reply;
}

/// Begins a transfer on a new connection, sends @p data and closes the connection.
void interrupt(TestPrinter &printer, const QJsonObject &request, const QList<QByteArray> &data)
{
    {
        RawPeer peer(printer.port());
        peer.send(request);
        for (const QByteArray &chunk : data)
            peer.sendChunk(chunk);
        QVERIFY(peer.waitForReplies(1 + data.size()));
        QVERIFY(peer.close());
    }
    QVERIFY(printer.waitForConnections(0));
}

} // namespace

class TestResume : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheRecordBehindTheAnnouncedSize();
    void writesTheExampleToTheByte();
    void resumesAfterThreeOfFiveChunks();
    void resumesWithoutAnyData();
    void resumesAgainAndAgain();
    void takesTheNameFromTheRecord();
    void logsTheReceivedCountAndTheKey();
    void deletesEarlierModelsWhenItResumes();
    void tellsTheHostBeforeTheRecordIsWritten();
    void resumesWhenAnotherPeerSaysTheSame();

    void startsAnew_data();
    void startsAnew();
    void startsAnewWithoutARecord_data();
    void startsAnewWithoutARecord();
    void writesNoRecordWhenIdle();
    void writesNoRecordIntoANewFile();
    void writesARecordAfterACancelWhenAskedTo_data();
    void writesARecordAfterACancelWhenAskedTo();
    void resumesAnEmptyKeyAgainstAMissingRecord();
};

void TestResume::writesTheRecordBehindTheAnnouncedSize()
{
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 10), {"abc", "de"});
    QCOMPARE(
        readFile(printer.temporaryFile()).toHex(),
        (QByteArray("abcde\0\0\0\0\0", 10) + record(10, 5, modelName, QStringLiteral("78563412")))
            .toHex());
    QCOMPARE(entriesOf(printer.dir()), QStringList{temporaryName});
}

void TestResume::writesTheExampleToTheByte()
{
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 2000000), {compressibleBytes(chunkBytes)});
    const QByteArray contents = readFile(printer.temporaryFile());
    QCOMPARE(contents.size(), 2000000 + 54);
    QCOMPARE(contents.mid(2000000).toHex(),
             QByteArrayLiteral("00000000001e84800000000000100000"
                               "0000000e0061002e007a00790064006c0070"
                               "0000001000370038003500360033003400310032"));
}

void TestResume::resumesAfterThreeOfFiveChunks()
{
    TestPrinter printer;
    const QByteArray contents = compressibleBytes(5 * chunkBytes);
    const QList<QByteArray> chunks = chunksOf(contents);
    interrupt(printer, startFile(modelName, contents.size()), chunks.mid(0, 3));
    QCOMPARE(
        printer.host().takeCalls(),
        QStringList({QStringLiteral("getPrintState(0, , false)"), QStringLiteral("fileTranStart()"),
                     QStringLiteral("fileTranDisconnet()")}));

    RawPeer peer(printer.port());
    peer.send(startFile(modelName, contents.size()));
    QCOMPARE(peer.take(), json(R"({"cmd":"START_FILE","compress":true,"filename":"a.zydlp",
        "size":"5242880","offset":"3145728","key":"78563412"})"));
    QCOMPARE(printer.lastStatus(), 2);
    peer.sendChunk(chunks.at(3));
    QCOMPARE(peer.take(), startData(contents.size(), 4 * chunkBytes));
    // The record stays after the data until the file is complete.
    QVERIFY(QFileInfo(printer.temporaryFile()).size() > contents.size());
    peer.sendChunk(chunks.at(4));
    QCOMPARE(peer.take(), startData(contents.size(), 5 * chunkBytes));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
    QVERIFY(readFile(printer.path(modelName)) == contents);
    QCOMPARE(
        printer.host().takeCalls(),
        QStringList({QStringLiteral("getPrintState(0, , false)"), QStringLiteral("fileTranStart()"),
                     QStringLiteral("finish(a.zydlp, 0)")}));
}

void TestResume::resumesWithoutAnyData()
{
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 4), {});
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    QCOMPARE(peer.take(), resumed(modelName, 4, 0, QStringLiteral("78563412")));
    peer.sendChunk("abcd");
    QCOMPARE(peer.take(), startData(4, 4));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcd"));
}

void TestResume::resumesAgainAndAgain()
{
    TestPrinter printer;
    const QString key = QStringLiteral("ffffffff80000000");
    const QJsonObject request = startFile(modelName, 6, key);
    for (int received = 0; received < 4; received += 2) {
        RawPeer peer(printer.port());
        peer.send(request);
        QCOMPARE(peer.take().value(QStringLiteral("offset")),
                 QJsonValue(QString::number(received)));
        peer.sendChunk(QByteArray("abcd").mid(received, 2));
        QCOMPARE(peer.take(), startData(6, received + 2, 0, key));
        QVERIFY(peer.close());
        QVERIFY(printer.waitForConnections(0));
        QCOMPARE(readFile(printer.temporaryFile()).mid(6).toHex(),
                 record(6, received + 2, modelName, key).toHex());
    }
    RawPeer peer(printer.port());
    peer.send(request);
    QCOMPARE(peer.take(), resumed(modelName, 6, 4, key));
    peer.sendChunk("ef");
    QCOMPARE(peer.take(), startData(6, 6, 0, key));
    QCOMPARE(peer.take(), checkData(1, key));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcdef"));
}

void TestResume::takesTheNameFromTheRecord()
{
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 4), {"ab"});
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("renamed.zydlp"), 4));
    QCOMPARE(peer.take(), resumed(modelName, 4, 2, QStringLiteral("78563412")));
    peer.sendChunk("cd");
    QVERIFY(peer.waitForReplies(2));
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
}

void TestResume::logsTheReceivedCountAndTheKey()
{
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 4 * chunkBytes),
              {compressibleBytes(chunkBytes), compressibleBytes(chunkBytes),
               compressibleBytes(chunkBytes)});
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    LogCapture log;
    peer.send(startFile(modelName, 4 * chunkBytes));
    QVERIFY(peer.waitForReplies(1));
    QCOMPARE(log.texts(),
             QStringList({QStringLiteral(R"(strCmd: "START_FILE")"),
                          QStringLiteral(R"(m_transFileSize 3145728 "78563412")")}));
}

void TestResume::deletesEarlierModelsWhenItResumes()
{
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 4), {"ab"});
    writeFile(printer.path(QStringLiteral("earlier.zydlp")), "x");
    writeFile(printer.path(QStringLiteral("notes.txt")), "x");
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    QVERIFY(peer.waitForReplies(1));
    QCOMPARE(entriesOf(printer.dir()), QStringList({QStringLiteral("notes.txt"), temporaryName}));
}

void TestResume::tellsTheHostBeforeTheRecordIsWritten()
{
    TestPrinter printer;
    qint64 sizeWhenTold = 0;
    int statusWhenTold = 0;
    printer.host().during(QStringLiteral("fileTranDisconnet"), [&] {
        sizeWhenTold = QFileInfo(printer.temporaryFile()).size();
        statusWhenTold = printer.lastStatus();
    });
    interrupt(printer, startFile(modelName, 4), {"ab"});
    QCOMPARE(sizeWhenTold, 4);
    QCOMPARE(statusWhenTold, 2);
    QCOMPARE(QFileInfo(printer.temporaryFile()).size(), 4 + 54);
}

void TestResume::resumesWhenAnotherPeerSaysTheSame()
{
    TestPrinter printer;
    RawPeer waiting(printer.port());
    {
        RawPeer peer(printer.port());
        peer.send(startFile(modelName, 4));
        peer.sendChunk("ab");
        QVERIFY(peer.waitForReplies(2));
        QVERIFY(peer.close());
    }
    QVERIFY(printer.waitForConnections(1));
    waiting.send(startFile(modelName, 4));
    QCOMPARE(waiting.take(), resumed(modelName, 4, 2, QStringLiteral("78563412")));
}

void TestResume::startsAnew_data()
{
    QTest::addColumn<QJsonObject>("request");
    const QString key = QStringLiteral("abcdef12");
    QTest::newRow("another key") << startFile(modelName, 6, QStringLiteral("12345678"));
    QTest::newRow("the key in other letter case") << startFile(modelName, 6, key.toUpper());
    QTest::newRow("a beginning of the key") << startFile(modelName, 6, key.left(4));
    QTest::newRow("no key") << startFile(modelName, 6, {});
    QTest::newRow("a larger size") << startFile(modelName, 7, key);
    QTest::newRow("a smaller size") << startFile(modelName, 5, key);
    QTest::newRow("a size beyond the file") << startFile(modelName, 1000, key);
}

void TestResume::startsAnew()
{
    QFETCH(QJsonObject, request);
    TestPrinter printer;
    interrupt(printer, startFile(modelName, 6, QStringLiteral("abcdef12")), {"xxx"});
    RawPeer peer(printer.port());
    peer.send(request);
    QCOMPARE(peer.take(), startedAnew(request));
    const int size = request.value(QStringLiteral("size")).toString().toInt();
    QCOMPARE(readFile(printer.temporaryFile()), QByteArray(size, '\0'));
    const QByteArray contents(size, 'n');
    const QString key = request.value(QStringLiteral("key")).toString();
    peer.sendChunk(contents);
    QCOMPARE(peer.take(), startData(size, size, 0, key));
    QCOMPARE(peer.take(), checkData(1, key));
    QCOMPARE(readFile(printer.path(modelName)), contents);
}

void TestResume::startsAnewWithoutARecord_data()
{
    QTest::addColumn<QByteArray>("left");
    const QByteArray good = record(6, 3, modelName, QStringLiteral("78563412"));
    QTest::newRow("an empty file") << QByteArray();
    QTest::newRow("a file that ends in the data") << QByteArray(3, 'x');
    QTest::newRow("a file that ends with the data") << QByteArray(6, 'x');
    QTest::newRow("a record without its last byte")
        << QByteArray(6, 'x') + good.left(good.size() - 1);
    QTest::newRow("numbers only") << QByteArray(6, 'x') + good.left(16);
    QTest::newRow("an odd text length")
        << QByteArray(6, 'x') + good.left(16) + QByteArray(100, '\x01');
    QTest::newRow("random bytes") << randomBytes(5000);
}

void TestResume::startsAnewWithoutARecord()
{
    QFETCH(QByteArray, left);
    TestPrinter printer;
    writeFile(printer.temporaryFile(), left);
    RawPeer peer(printer.port());
    const QJsonObject request = startFile(modelName, 6);
    peer.send(request);
    QCOMPARE(peer.take(), startedAnew(request));
    peer.sendChunk("abcdef");
    QCOMPARE(peer.take(), startData(6, 6));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcdef"));
}

void TestResume::writesNoRecordWhenIdle()
{
    TestPrinter printer;
    // Complete, so nothing is left to resume.
    interrupt(printer, startFile(modelName, 2), {"ab"});
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("ab"));
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 0);
}

void TestResume::writesNoRecordIntoANewFile()
{
    TestPrinter printer;
    {
        RawPeer peer(printer.port());
        peer.send(startFile(modelName, 4));
        peer.sendChunk("ab");
        QVERIFY(peer.waitForReplies(2));
        QVERIFY(QFile::remove(printer.temporaryFile()));
        QVERIFY(peer.close());
    }
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

void TestResume::writesARecordAfterACancelWhenAskedTo_data()
{
    QTest::addColumn<QList<QByteArray>>("data");
    QTest::addColumn<int>("sizeLeft");
    // A cancel resets the counters only when data has come and so the file is open.
    QTest::newRow("before any data") << QList<QByteArray>{} << 4;
    QTest::newRow("after some") << QList<QByteArray>{"ab"} << 0;
}

void TestResume::writesARecordAfterACancelWhenAskedTo()
{
    QFETCH(QList<QByteArray>, data);
    QFETCH(int, sizeLeft);
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    for (const QByteArray &chunk : data)
        peer.sendChunk(chunk);
    peer.send(json(R"({"cmd":"CANCEL_FILE"})"));
    QVERIFY(peer.waitForReplies(2 + data.size()));
    QCOMPARE(entriesOf(printer.dir()), QStringList());

    printer.handles().constFirst()->saveKeyInfo();

    QCOMPARE(
        readFile(printer.temporaryFile()).toHex(),
        (QByteArray(sizeLeft, '\0') + record(sizeLeft, 0, modelName, QStringLiteral("78563412")))
            .toHex());
}

void TestResume::resumesAnEmptyKeyAgainstAMissingRecord()
{
    TestPrinter printer;
    writeFile(printer.temporaryFile(), QByteArray(6, 'x'));
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, QStringLiteral("6"), QStringLiteral("")));
    QCOMPARE(peer.take(), resumed(QStringLiteral(""), 0, 0, QStringLiteral("")));
    peer.sendChunk("abc");
    QCOMPARE(peer.take(), startData(0, 3, 0, QStringLiteral("")));
    QCOMPARE(peer.take(), checkData(1, QStringLiteral("")));
    QCOMPARE(printer.host().calls().last(), QStringLiteral("finish(wifi_tranfer.tmp, 0)"));
    QCOMPARE(QFileInfo(printer.temporaryFile()).size(), 0);
}

ZY_TEST(TestResume)
#include "tst_resume.moc"
