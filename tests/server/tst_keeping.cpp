// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The record that is kept up to date, and the space that is reserved, as they stand on the disk.

#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace zytest;

namespace
{

const QString modelName = QStringLiteral("a.zydlp");

ZyServerOptions everyTwoChunks()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setRecordInterval(2 * chunkBytes);
    return options;
}

/// Sends @p chunks of @p contents and waits for what is acknowledged.
void sendPart(RawPeer &peer, const QByteArray &contents, int chunks)
{
    peer.send(startFile(modelName, contents.size()));
    for (int i = 0; i < chunks; ++i)
        peer.sendChunk(chunksOf(contents).at(i));
    QVERIFY(peer.waitForReplies(1 + chunks));
    // The record follows the acknowledgement in the same handling of a message.
    peer.ask(R"({"cmd":"VERSION_CHECK"})");
}

} // namespace

class TestKeeping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reservesTheSpaceAtOnce();
    void keepsARecordThatADeployedPrinterResumesFrom_data();
    void keepsARecordThatADeployedPrinterResumesFrom();
    void resumesWhatADeployedPrinterLeft();
    void resumesAFileThatWasOnlyMissingItsName();
    void replacesAFileOfTheSameName();
    void refusesWhatWouldNotLeaveEnoughFree();
    void refusesWhatCannotBeReserved();
    void keepsARecordWithoutReservedSpace();
};

void TestKeeping::reservesTheSpaceAtOnce()
{
    TestPrinter printer(ZyServerOptions::hardened());
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 5 * chunkBytes));
    peer.take();
    struct stat status {
    };
    QCOMPARE(::stat(printer.temporaryFile().toLocal8Bit().constData(), &status), 0);
    QVERIFY(status.st_blocks * 512 >= 5 * chunkBytes);
    QCOMPARE(qint64(status.st_size), qint64(5 * chunkBytes + 8 + 8 + 4 + 14 + 4 + 16));
}

void TestKeeping::keepsARecordThatADeployedPrinterResumesFrom_data()
{
    QTest::addColumn<int>("sent");
    QTest::addColumn<int>("recorded");
    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("less than the interval") << 1 << 0;
    QTest::newRow("the interval") << 2 << 2;
    QTest::newRow("more") << 3 << 2;
    QTest::newRow("twice the interval") << 4 << 4;
}

void TestKeeping::keepsARecordThatADeployedPrinterResumesFrom()
{
    QFETCH(const int, sent);
    QFETCH(const int, recorded);
    const QByteArray contents = randomBytes(5 * chunkBytes + 100);
    TestPrinter printer(everyTwoChunks());
    RawPeer sender(printer.port());
    sendPart(sender, contents, sent);
    // What a process killed now would leave.
    TestPrinter deployed;
    QVERIFY(QFile::copy(printer.temporaryFile(), deployed.temporaryFile()));
    RawPeer peer(deployed.port());
    QJsonObject wanted = startFile(modelName, contents.size());
    peer.send(wanted);
    wanted.insert(QStringLiteral("offset"), QString::number(recorded * chunkBytes));
    wanted.insert(QStringLiteral("compress"), true);
    QCOMPARE(peer.take(), wanted);
    for (const QByteArray &chunk : chunksOf(contents).mid(recorded)) {
        peer.sendChunk(chunk);
        peer.take();
    }
    QCOMPARE(peer.take(), checkData(1));
    QVERIFY(readFile(deployed.path(modelName)) == contents);
}

void TestKeeping::resumesWhatADeployedPrinterLeft()
{
    const QByteArray contents = randomBytes(2 * chunkBytes);
    TestPrinter deployed;
    {
        RawPeer peer(deployed.port());
        sendPart(peer, contents, 1);
    }
    QVERIFY(deployed.waitForConnections(0));
    TestPrinter printer(everyTwoChunks());
    QVERIFY(QFile::copy(deployed.temporaryFile(), printer.temporaryFile()));
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, contents.size()));
    QCOMPARE(peer.take().value(QStringLiteral("offset")), QString::number(chunkBytes));
    peer.sendChunk(contents.mid(chunkBytes));
    QVERIFY(peer.waitForReplies(2));
    QVERIFY(readFile(printer.path(modelName)) == contents);
}

void TestKeeping::resumesAFileThatWasOnlyMissingItsName()
{
    QByteArray contents = randomBytes(2 * chunkBytes + 100);
    contents.replace(contents.size() - 4, 4, QByteArrayLiteral("\x12\x34\x56\x78"));
    const QJsonObject request = startFile(modelName, contents.size());
    // The data are whole and the record is cut off.
    for (const bool isWhole : {true, false}) {
        TestPrinter printer(everyTwoChunks());
        QByteArray left = contents;
        if (!isWhole)
            left.replace(left.size() - 4, 4, QByteArray(4, '\0'));
        writeFile(printer.temporaryFile(), left);
        RawPeer peer(printer.port());
        peer.send(request);
        const int offset = peer.take().value(QStringLiteral("offset")).toString().toInt();
        QCOMPARE(offset, isWhole ? chunkBytes + 100 : 0);
        for (const QByteArray &chunk : chunksOf(contents.mid(offset)))
            peer.sendChunk(chunk);
        QVERIFY(waitUntil([&] { return printer.host().count(QStringLiteral("finish")) == 1; }));
        QVERIFY(readFile(printer.path(modelName)) == contents);
    }
}

void TestKeeping::replacesAFileOfTheSameName()
{
    TestPrinter printer(ZyServerOptions::hardened());
    writeFile(printer.path(QStringLiteral("b.bin")), "longer than the new one");
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("b.bin"), 5));
    peer.sendChunk("abcde");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(readFile(printer.path(QStringLiteral("b.bin"))), QByteArrayLiteral("abcde"));
    QCOMPARE(entriesOf(printer.dir()), QStringList{QStringLiteral("b.bin")});
}

void TestKeeping::refusesWhatWouldNotLeaveEnoughFree()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setKeepFree(Q_INT64_C(1) << 60);
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 5));
    QCOMPARE(peer.take(), refusal(1, 5));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranStart")), 0);
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

/// There is enough free space, but no file may be as large.
void TestKeeping::refusesWhatCannotBeReserved()
{
    ZyServerOptions options;
    options.setReservesSpace(true);
    QString fault;
    options.setFailureHandler(
        [&](ZyServerOptions::Failure, const QString &detail) { fault = detail; });
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    rlimit limit{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{2 * chunkBytes, limit.rlim_max}; // the record has to fit, too
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    peer.send(startFile(modelName, 2 * chunkBytes));
    const QJsonObject reply = peer.take();
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(reply, refusal(1, 5));
    QCOMPARE(fault, QStringLiteral("File too large"));
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

void TestKeeping::keepsARecordWithoutReservedSpace()
{
    ZyServerOptions options;
    options.setRecordInterval(chunkBytes);
    const QByteArray contents = randomBytes(3 * chunkBytes);
    TestPrinter printer(options);
    RawPeer sender(printer.port());
    sendPart(sender, contents, 1);
    // What a process killed now would leave.
    TestPrinter next;
    QVERIFY(QFile::copy(printer.temporaryFile(), next.temporaryFile()));
    RawPeer peer(next.port());
    peer.send(startFile(modelName, contents.size()));
    QCOMPARE(peer.take().value(QStringLiteral("offset")), QString::number(chunkBytes));
}

ZY_TEST(TestKeeping)
#include "tst_keeping.moc"
