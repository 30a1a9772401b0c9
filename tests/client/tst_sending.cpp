// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sending a file: what goes over the wire, what is emitted and what is logged.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QFile>

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestSending : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void derivesTheKeyFromTheLastBytes_data();
    void derivesTheKeyFromTheLastBytes();
    void announcesTheFile();
    void announcesAFileBeyondFourGibibytes();
    void sendsTheFileInChunks_data();
    void sendsTheFileInChunks();
    void compressesAtTheLevelAskedFor_data();
    void compressesAtTheLevelAskedFor();
    void reportsProgressThenTheEndThenTheReply();
    void reportsWhatThePrinterSaysItHolds();
    void resumesWhereThePrinterSays_data();
    void resumesWhereThePrinterSays();
    void sendsOneFileAfterAnother();
};

namespace
{

constexpr qint64 mebi = 1024 * 1024;

/// What the send loop logs; the end of the file on the printer is logged apart from it.
QStringList loopLines(const Session &session)
{
    QStringList lines;
    for (const QString &line : session.logLines()) {
        if (!line.startsWith(QLatin1String("check_data")))
            lines.append(line);
    }
    return lines;
}

/// Where @p part first stands in the trace.
int indexOfPart(const Session &session, const char *part)
{
    const QStringList &lines = session.trace.lines();
    return int(lines.indexOf(lines.filter(QString::fromUtf8(part)).value(0)));
}

QStringList expectedLoopLines(qint64 total, const QVector<qint64> &sent)
{
    QStringList lines{"start send"_s, QStringLiteral("_totalBytes =  %1").arg(total)};
    for (const qint64 bytes : sent)
        lines.append(QStringLiteral("sendBytes= %1  _totalBytes= %2").arg(bytes).arg(total));
    return lines << "send end"_s;
}

} // namespace

void TestSending::derivesTheKeyFromTheLastBytes_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<QString>("key");

    const auto hex = [](const char *digits) { return QByteArray::fromHex(digits); };
    QTest::newRow("plain") << hex("aaaaaaaa12345678") << "78563412"_s;
    QTest::newRow("a longer file") << QByteArray(5000, 'x') + hex("12345678") << "78563412"_s;
    QTest::newRow("leading zeros fall away") << hex("aaaaaaaa01000000") << "1"_s;
    QTest::newRow("last byte 7f") << hex("aaaaaaaaffffff7f") << "7fffffff"_s;
    QTest::newRow("last byte ff") << hex("aaaaaaaa010000ff") << "ffffffffff000001"_s;
    QTest::newRow("last byte 80") << hex("aaaaaaaa00000080") << "ffffffff80000000"_s;
    QTest::newRow("seven bytes") << hex("aaaaaaaa123456") << "563412"_s;
    QTest::newRow("five bytes") << hex("aaaaaaaa80") << "80"_s;
    QTest::newRow("four bytes") << hex("12345678") << "0"_s;
    QTest::newRow("empty") << QByteArray() << "0"_s;
}

void TestSending::derivesTheKeyFromTheLastBytes()
{
    QFETCH(QByteArray, tail);
    QFETCH(QString, key);
    Session session;
    QVERIFY(session.open());
    QFile file(session.writeFile("model.zydlp"_s, tail));

    QCOMPARE(session.client.getFileKey(file), key);
    QVERIFY(!file.isOpen());
}

void TestSending::announcesTheFile()
{
    Session session;
    QVERIFY(session.open());
    const QString path = session.writeFile("local.zydlp"_s, "0123456789abcd\x01\x02\x03\x04");

    session.client.sendFile(path, "stored \"7\".zydlp"_s);

    WAIT_COMPARE(session.printer.texts(),
                 QStringList{R"({"cmd":"START_FILE","filename":"stored \"7\".zydlp",)"
                             R"("key":"4030201","offset":"0","size":"18"})"_s});
    QCOMPARE(session.trace.lines(), QStringList());
    QCOMPARE(session.logLines(), QStringList());
}

void TestSending::announcesAFileBeyondFourGibibytes()
{
    constexpr qint64 size = 5 * 1024 * mebi;
    Session session;
    QVERIFY(session.open());
    QFile file(session.writeFile("large.zydlp"_s, "start"));
    QVERIFY(file.resize(size)); // sparse
    TransferRules rules;
    rules.compress = false;
    rules.offset = size - 3;
    session.printer.answerTransfers(rules);

    QVERIFY(session.client.sendFileStart(file, "m"_s));

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(session.printer.texts(),
             QStringList{R"({"cmd":"START_FILE","filename":"m","key":"0","offset":"0",)"
                         R"("size":"5368709120"})"_s});
    QCOMPARE(session.printer.chunks(), QByteArrayList{QByteArray(3, '\0')});
    QCOMPARE(loopLines(session), expectedLoopLines(size, {size}));
}

void TestSending::sendsTheFileInChunks_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("compress");
    QTest::addColumn<QVector<qint64>>("sentBytes");

    const auto row = [](const char *tag, qint64 size, const QVector<qint64> &sentBytes) {
        for (const bool compress : {true, false})
            QTest::addRow("%s, %s", tag, compress ? "compressed" : "as it is")
                << size << compress << sentBytes;
    };
    row("one byte", 1, {1});
    row("one byte less than a chunk", mebi - 1, {mebi - 1});
    row("one chunk", mebi, {mebi});
    row("one byte more than a chunk", mebi + 1, {mebi, mebi + 1});
    row("two chunks and a half", 2621440, {mebi, 2 * mebi, 2621440});
}

void TestSending::sendsTheFileInChunks()
{
    QFETCH(qint64, size);
    QFETCH(bool, compress);
    QFETCH(QVector<qint64>, sentBytes);
    const QByteArray contents
        = compress ? zytest::compressibleBytes(size) : zytest::randomBytes(size);
    Session session;
    QVERIFY(session.open());
    TransferRules rules;
    rules.compress = compress;
    session.printer.answerTransfers(rules);

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "stored.zydlp"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    const QList<QByteArray> chunks = zytest::chunksOf(contents);
    QCOMPARE(session.printer.chunks().size(), chunks.size());
    for (int i = 0; i < chunks.size(); ++i) {
        const QByteArray &payload = session.printer.chunks().at(i);
        // Byte for byte: each chunk for itself, at zlib's default level.
        QVERIFY(payload == (compress ? qCompress(chunks.at(i), -1) : chunks.at(i)));
        QVERIFY(!compress || qUncompress(payload) == chunks.at(i));
    }
    QCOMPARE(loopLines(session), expectedLoopLines(size, sentBytes));
}

void TestSending::compressesAtTheLevelAskedFor_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("sentLevel");
    QTest::newRow("left to zlib") << -1 << -1;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("fastest") << 1 << 1;
    QTest::newRow("smallest") << 9 << 9;
    QTest::newRow("no level") << 10 << -1;
}

void TestSending::compressesAtTheLevelAskedFor()
{
    QFETCH(int, level);
    QFETCH(int, sentLevel);
    const QByteArray contents = zytest::compressibleBytes(mebi + 1);
    Session session;
    QVERIFY(session.open());
    QCOMPARE(session.client.compressionLevel(), -1);
    session.client.setCompressionLevel(level);
    QCOMPARE(session.client.compressionLevel(), level);
    session.printer.answerTransfers();

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "stored.zydlp"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    QByteArrayList payloads;
    for (const QByteArray &chunk : zytest::chunksOf(contents))
        payloads.append(qCompress(chunk, sentLevel));
    QVERIFY(session.printer.chunks() == payloads);
}

void TestSending::reportsProgressThenTheEndThenTheReply()
{
    Session session;
    QVERIFY(session.open());
    TransferRules rules;
    rules.checkState = 7;
    session.printer.answerTransfers(rules);
    const QString path = session.writeFile("local.zydlp"_s, zytest::compressibleBytes(mebi + 5));

    session.client.sendFile(path, "stored.zydlp"_s);
    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);

    QCOMPARE(session.trace.of("fileTransProgress"_s),
             (QStringList{QStringLiteral("fileTransProgress(%1, 1048581, 1048576)").arg(path),
                          QStringLiteral("fileTransProgress(%1, 1048581, 1048581)").arg(path)}));
    QCOMPARE(session.trace.of("finish"_s), QStringList{QStringLiteral("finish(%1, 7)").arg(path)});
    const QStringList passedOn = session.trace.of("jsonMessageReceived"_s);
    QCOMPARE(passedOn.size(), 4);
    QCOMPARE(session.trace.lines().size(), 7);
    // The reply that started it all is passed on when the loop has ended.
    QVERIFY(passedOn.at(0).contains("START_DATA"_s));
    QVERIFY(passedOn.at(1).contains("START_DATA"_s));
    const int lastProgress = indexOfPart(session, "\"received\":\"1048581\"");
    QVERIFY(indexOfPart(session, "\"START_FILE\"") > lastProgress);
    QVERIFY(indexOfPart(session, "finish(") > lastProgress);
    QVERIFY(session.logLines().contains("check_data checkstate = 7"_s));
}

void TestSending::reportsWhatThePrinterSaysItHolds()
{
    Session session;
    QVERIFY(session.open());
    const QString path = session.writeFile("local.zydlp"_s, "0123456789");
    session.client.sendFile(path, "m"_s);
    WAIT_COMPARE(session.printer.texts().size(), 1);
    const QJsonObject request = zytest::objectIn(session.printer.texts().constFirst());
    const QString key = request.value("key"_s).toString();
    connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client,
            [&] { session.printer.send(zytest::startDataReply(key, 1000, 200)); });

    session.printer.send(zytest::startFileReply(request));
    WAIT_VERIFY(session.hasEnded());

    QCOMPARE(session.trace.of("fileTransProgress"_s),
             QStringList{QStringLiteral("fileTransProgress(%1, 1000, 200)").arg(path)});
    QCOMPARE(session.trace.count("finish"_s), 0);
}

void TestSending::resumesWhereThePrinterSays_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QVector<qint64>>("sentBytes");

    QTest::newRow("after the first chunk") << mebi << QVector<qint64>{2 * mebi, 2621440};
    QTest::newRow("within a chunk") << qint64(1000001) << QVector<qint64>{1000001 + mebi, 2621440};
    QTest::newRow("before the last byte") << qint64(2621439) << QVector<qint64>{2621440};
    QTest::newRow("at the end") << qint64(2621440) << QVector<qint64>{};
}

void TestSending::resumesWhereThePrinterSays()
{
    QFETCH(qint64, offset);
    QFETCH(QVector<qint64>, sentBytes);
    constexpr qint64 size = 2621440;
    const QByteArray contents = zytest::compressibleBytes(size);
    Session session;
    QVERIFY(session.open());
    TransferRules rules;
    rules.offset = offset;
    session.printer.answerTransfers(rules);

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);
    WAIT_VERIFY(session.hasEnded());

    QByteArray arrived;
    for (const QByteArray &payload : session.printer.chunks())
        arrived += qUncompress(payload);
    QVERIFY(arrived == contents.mid(static_cast<int>(offset)));
    QCOMPARE(loopLines(session), expectedLoopLines(size, sentBytes));
}

void TestSending::sendsOneFileAfterAnother()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    QStringList paths;
    for (int i = 0; i < 5; ++i) {
        const QString name = QStringLiteral("model%1.zydlp").arg(i);
        paths.append(session.writeFile(name, zytest::randomBytes(1000 + i, quint32(i))));
        session.trace.clear();
        session.client.sendFile(paths.constLast(), name);
        WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
        QCOMPARE(session.trace.of("finish"_s),
                 QStringList{QStringLiteral("finish(%1, 1)").arg(paths.constLast())});
    }
    QCOMPARE(session.printer.chunks().size(), 5);
}

ZY_TEST(TestSending)

#include "tst_sending.moc"
