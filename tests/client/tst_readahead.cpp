// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Compressing ahead: what a printer and a host see stays what it was, with and without threads.

#include "processview.h"
#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QDir>
#include <QFile>
#include <QTimer>

using zytest::chunkBytes;
using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestReadAhead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsNoThreadUnlessAsked_data();
    void startsNoThreadUnlessAsked();
    void keepsTheOrderOfAllThatIsSeen_data() { addThreads(); }
    void keepsTheOrderOfAllThatIsSeen();
    void endsAsAChangedFileDoes_data();
    void endsAsAChangedFileDoes();
    void readsTheNextChunkWhileOneIsUnderWay_data();
    void readsTheNextChunkWhileOneIsUnderWay();
    void takesALevelForWhatIsNotCompressedYet();
    void compressesAdaptively_data() { addThreads(); }
    void compressesAdaptively();
    void leavesItsThreadToTheApplication();
    void survivesDeletionAtAnyInstant_data();
    void survivesDeletionAtAnyInstant();

private:
    static void addThreads();
};

namespace
{

/// Text of a small vocabulary, for which zlib takes long.
QByteArray slowBytes(int size)
{
    QByteArray text;
    quint32 state = 1;
    while (text.size() < size) {
        state = state * 1664525U + 1013904223U;
        text += "G1 X" + QByteArray::number(state >> 25) + " Y" + QByteArray::number(state >> 22);
    }
    return text.left(size);
}

QByteArray inflated(const QByteArrayList &payloads)
{
    QByteArray bytes;
    for (const QByteArray &payload : payloads)
        bytes += qUncompress(payload);
    return bytes;
}

QByteArrayList compressedChunks(const QByteArray &contents, int level = -1)
{
    QByteArrayList payloads;
    for (const QByteArray &chunk : zytest::chunksOf(contents))
        payloads.append(qCompress(chunk, level));
    return payloads;
}

/// How far @p path, which this process has open, has been read.
qint64 readSoFar(const QString &path)
{
    const QDir descriptors("/proc/self/fd"_s);
    for (const QString &name : descriptors.entryList(QDir::Files | QDir::System)) {
        if (QFile::symLinkTarget(descriptors.filePath(name)) != path)
            continue;
        const QByteArray info = zytest::readFile("/proc/self/fdinfo/"_s + name);
        return info.mid(info.indexOf("pos:") + 4).split('\n').constFirst().trimmed().toLongLong();
    }
    return -1;
}

int threadCount()
{
    return int(zytest::entriesOf("/proc/self/task"_s).size());
}

} // namespace

void TestReadAhead::addThreads()
{
    QTest::addColumn<int>("threads");
    QTest::newRow("no threads") << 0;
    QTest::newRow("one thread") << 1;
    QTest::newRow("three threads") << 3;
    QTest::newRow("as many as pay") << -1;
}

void TestReadAhead::startsNoThreadUnlessAsked_data()
{
    QTest::addColumn<int>("level");
    QTest::newRow("default level") << -1;
    QTest::newRow("adaptive") << int(ZySslEchoClient::Adaptive);
}

/// The first test: a thread of a later one would count.
void TestReadAhead::startsNoThreadUnlessAsked()
{
    QFETCH(int, level);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(0);
    session.client.setCompressionLevel(level);
    session.printer.answerTransfers();
    const int before = threadCount();
    int most = 0;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this,
            [&] { most = qMax(most, threadCount()); });
    session.client.sendFile(session.writeFile("local.zydlp"_s, slowBytes(3 * chunkBytes)), "m"_s);
    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(most, before);
}

void TestReadAhead::keepsTheOrderOfAllThatIsSeen()
{
    QFETCH(int, threads);
    const QByteArray contents = zytest::compressibleBytes(5 * chunkBytes / 2);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(threads);
    // No verdict, which may come before the loop has ended or after it.
    QString key;
    QStringList wire;
    qint64 received = 0;
    connect(&session.printer, &ScriptedPrinter::textReceived, this, [&](const QString &text) {
        const QJsonObject request = zytest::objectIn(text);
        wire.append(request.value("cmd"_s).toString());
        key = request.value("key"_s).toString();
        session.printer.send(zytest::startFileReply(request));
    });
    connect(&session.printer, &ScriptedPrinter::chunkReceived, this, [&](const QByteArray &chunk) {
        wire.append(QString::number(qUncompress(chunk).size()));
        received += qUncompress(chunk).size();
        session.printer.send(zytest::startDataReply(key, contents.size(), received));
    });
    QStringList seen;
    int logged = 0;
    const auto takeLog = [&] {
        const QStringList lines = session.logLines();
        seen += lines.mid(logged);
        logged = int(lines.size());
    };
    connect(&session.trace, &zytest::SignalTrace::grown, this, [&](const QString &line) {
        takeLog();
        seen.append(line.section(QLatin1Char('('), 0, 0));
    });

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);
    WAIT_VERIFY(session.hasEnded());

    QCOMPARE(wire, (QStringList{"START_FILE"_s, "1048576"_s, "1048576"_s, "524288"_s}));
    QVERIFY(session.printer.chunks() == compressedChunks(contents));
    const QStringList acknowledged{"fileTransProgress"_s, "jsonMessageReceived"_s};
    QCOMPARE(seen,
             (QStringList{"start send"_s, "_totalBytes =  2621440"_s,
                          "sendBytes= 1048576  _totalBytes= 2621440"_s}
              + acknowledged + QStringList{"sendBytes= 2097152  _totalBytes= 2621440"_s}
              + acknowledged + QStringList{"sendBytes= 2621440  _totalBytes= 2621440"_s}
              + acknowledged + QStringList{"send end"_s, "jsonMessageReceived"_s}));
}

void TestReadAhead::endsAsAChangedFileDoes_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<QByteArray>("after"); // null: removed
    QTest::addColumn<QByteArray>("sent");
    const QByteArray before = zytest::compressibleBytes(7 * chunkBytes / 2, 1);
    const QByteArray longer = zytest::compressibleBytes(5 * chunkBytes, 2);
    const QByteArray first = before.left(chunkBytes);
    for (const int threads : {0, 3}) {
        const auto row = [&](const char *tag, const QByteArray &after, const QByteArray &sent) {
            QTest::addRow("%s, %d threads", tag, threads) << threads << after << sent;
        };
        const auto rest = [&](int size) { return longer.mid(chunkBytes, size - chunkBytes); };
        row("removed", {}, before);
        row("other bytes", longer.left(before.size()), first + rest(int(before.size())));
        row("longer", longer, first + rest(int(longer.size())));
        row("shorter", longer.left(chunkBytes + 1), first + rest(chunkBytes + 1));
        row("cut where it was read", longer.left(chunkBytes), first);
        row("cut before", longer.left(1), first);
        row("emptied", QByteArray(""), first);
    }
}

void TestReadAhead::endsAsAChangedFileDoes()
{
    QFETCH(int, threads);
    QFETCH(QByteArray, after);
    QFETCH(QByteArray, sent);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(threads);
    const QString path
        = session.writeFile("local.zydlp"_s, zytest::compressibleBytes(7 * chunkBytes / 2, 1));
    connect(&session.printer, &ScriptedPrinter::textReceived, this, [&](const QString &text) {
        session.printer.send(zytest::startFileReply(zytest::objectIn(text)));
    });
    connect(&session.printer, &ScriptedPrinter::chunkReceived, this, [&] {
        if (session.printer.chunks().size() == 1) {
            QTest::qSleep(20); // the file system's clock moves on
            if (after.isNull())
                QFile::remove(path);
            else
                zytest::writeFile(path, after);
        }
        session.printer.send(zytest::startDataReply("k"_s, 1, 1));
    });

    session.client.sendFile(path, "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(inflated(session.printer.chunks()) == sent);
    QCOMPARE(session.printer.chunks().size(), zytest::chunksOf(sent).size());
    QCOMPARE(session.logLines().constLast(), "send end"_s);
}

void TestReadAhead::readsTheNextChunkWhileOneIsUnderWay_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<qint64>("read");
    QTest::newRow("no threads") << 0 << qint64(2 * chunkBytes);
    QTest::newRow("two threads") << 2 << qint64(4 * chunkBytes);
}

void TestReadAhead::readsTheNextChunkWhileOneIsUnderWay()
{
    QFETCH(int, threads);
    QFETCH(qint64, read);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(threads);
    TransferRules silent;
    silent.acknowledges = false;
    session.printer.answerTransfers(silent);
    const QString path
        = session.writeFile("local.zydlp"_s, zytest::compressibleBytes(9 * chunkBytes));
    qint64 soFar = 0;
    connect(&session.printer, &ScriptedPrinter::chunkReceived, this, [&] {
        QTimer::singleShot(0, &session.client, [&] {
            soFar = readSoFar(path);
            session.client.close();
        });
    });

    session.client.sendFile(path, "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(soFar, read);
}

void TestReadAhead::takesALevelForWhatIsNotCompressedYet()
{
    const QByteArray contents = zytest::compressibleBytes(4 * chunkBytes);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(0);
    session.printer.answerTransfers();
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this,
            [&] { session.client.setCompressionLevel(0); });

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    // The second chunk was compressed while the first was under way.
    QVERIFY(session.printer.chunks()
            == compressedChunks(contents).mid(0, 2) + compressedChunks(contents, 0).mid(2));
}

void TestReadAhead::compressesAdaptively()
{
    QFETCH(int, threads);
    const QByteArray contents = slowBytes(4 * chunkBytes) + zytest::randomBytes(4 * chunkBytes + 1);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(threads);
    session.client.setCompressionLevel(ZySslEchoClient::Adaptive);
    QCOMPARE(session.client.compressionLevel(), int(ZySslEchoClient::Adaptive));
    QCOMPARE(session.client.compressionThreads(), threads);
    session.printer.answerTransfers();

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);

    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    QCOMPARE(session.printer.chunks().size(), 9);
    QVERIFY(inflated(session.printer.chunks()) == contents);
    QVERIFY(session.printer.chunks().constFirst().size() < chunkBytes / 2);
}

void TestReadAhead::leavesItsThreadToTheApplication()
{
    const QByteArray contents = slowBytes(6 * chunkBytes);
    Session session;
    QVERIFY(session.open());
    session.client.setCompressionThreads(2);
    session.client.setCompressionLevel(9);
    session.printer.answerTransfers();
    const qint64 processBefore = zytest::processorTime();
    const qint64 threadBefore = zytest::threadTime();

    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);
    WAIT_VERIFY(session.hasEnded());

    const qint64 all = zytest::processorTime() - processBefore;
    const qint64 own = zytest::threadTime() - threadBefore;
    // The printer's work is done in this thread as well.
    QVERIFY2(own < all / 2, qPrintable(QStringLiteral("%1 of %2 ms").arg(own).arg(all)));
}

void TestReadAhead::survivesDeletionAtAnyInstant_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<int>("level");
    for (const int threads : {0, 1, 3}) {
        QTest::addRow("%d threads, smallest", threads) << threads << 9;
        QTest::addRow("%d threads, adaptive", threads) << threads << int(ZySslEchoClient::Adaptive);
    }
}

void TestReadAhead::survivesDeletionAtAnyInstant()
{
    QFETCH(int, threads);
    QFETCH(int, level);
    const QByteArray contents = slowBytes(3 * chunkBytes);
    QTemporaryDir dir;
    const QString path = zytest::writeFile(dir.filePath("local.zydlp"_s), contents);
    for (int delay = 0; delay < 60; delay += 6) {
        ScriptedPrinter printer;
        printer.answerTransfers();
        QPointer<ZySslEchoClient> client = new ZySslEchoClient(printer.url());
        client->setCompressionThreads(threads);
        client->setCompressionLevel(level);
        connect(client, &ZySslEchoClient::connected, client,
                [&] { client->sendFile(path, "m"_s); });
        connect(&printer, &ScriptedPrinter::textReceived, client, [&] {
            QTimer::singleShot(delay, Qt::PreciseTimer, client, [&] { delete client; });
        });
        WAIT_VERIFY(!client);
        WAIT_VERIFY(!printer.peer());
    }
}

ZY_TEST(TestReadAhead)

#include "tst_readahead.moc"
