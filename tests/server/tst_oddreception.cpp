// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Data messages that are not what they should be, and files that cannot be written.

#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QDir>
#include <QTest>

using namespace zytest;

namespace
{

const QString modelName = QStringLiteral("a.zydlp");

} // namespace

class TestOddReception : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutsDataBeyondTheAnnouncedSize();
    void keepsReceivingAnEmptyFile();
    void ignoresDataOnceTheFileIsComplete();
    void reportsTheTemporaryNameWhenTheRenamingFails_data();
    void reportsTheTemporaryNameWhenTheRenamingFails();
    void countsNothingForDataThatDoesNotInflate_data();
    void countsNothingForDataThatDoesNotInflate();
    void reportsATemporaryFileThatCannotBeReopened();
    void countsDownByOneWhenAWriteFails();
    void receivesThroughAHandleOutsideTheRegistry();
};

void TestOddReception::cutsDataBeyondTheAnnouncedSize()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    peer.take();
    peer.sendChunk("ab");
    QCOMPARE(peer.take(), startData(4, 2));
    peer.sendChunk("cdefgh");
    QCOMPARE(peer.take(), startData(4, 8));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcd"));
}

void TestOddReception::keepsReceivingAnEmptyFile()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    RawPeer other(printer.port());
    peer.send(startFile(modelName, 0, QStringLiteral("0")));
    QCOMPARE(peer.take().value(QStringLiteral("size")), QJsonValue(QStringLiteral("0")));
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.host().count(QStringLiteral("finish")), 0);
    other.send(startFile(QStringLiteral("b.zydlp"), 5));
    QCOMPARE(other.take(), refusal(1, 3));
    QCOMPARE(peer.ask(R"({"cmd":"CANCEL_FILE"})"), json(R"({"cmd":"CANCEL_FILE","errorcode":0})"));
    other.send(startFile(QStringLiteral("b.zydlp"), 5));
    QCOMPARE(other.take(), accepted(QStringLiteral("b.zydlp"), QStringLiteral("5")));
}

void TestOddReception::ignoresDataOnceTheFileIsComplete()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 2));
    peer.sendChunk("ab");
    QVERIFY(peer.waitForReplies(3));
    peer.take();
    peer.take();
    peer.take();
    peer.sendChunk("cd");
    QVERIFY(peer.expectNothing());
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("ab"));
}

void TestOddReception::reportsTheTemporaryNameWhenTheRenamingFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no name") << QStringLiteral("");
    QTest::newRow("a directory that is not there") << QStringLiteral("nowhere/a.zydlp");
    QTest::newRow("the name of a directory") << QStringLiteral("directory");
}

void TestOddReception::reportsTheTemporaryNameWhenTheRenamingFails()
{
    QFETCH(QString, name);
    TestPrinter printer;
    QVERIFY(QDir(printer.dir()).mkdir(QStringLiteral("directory")));
    RawPeer peer(printer.port());
    peer.send(startFile(name, 3));
    QCOMPARE(peer.take(), accepted(name, QStringLiteral("3")));
    peer.sendChunk("abc");
    QCOMPARE(peer.take(), startData(3, 3));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(printer.host().calls().last(), QStringLiteral("finish(wifi_tranfer.tmp, 0)"));
    QCOMPARE(readFile(printer.temporaryFile()), QByteArrayLiteral("abc"));
    QCOMPARE(printer.lastStatus(), 0);
}

void TestOddReception::countsNothingForDataThatDoesNotInflate_data()
{
    QTest::addColumn<QByteArray>("payload");
    const QByteArray good = qCompress(QByteArray(1000, 'x'));
    QTest::newRow("plain text") << QByteArrayLiteral("abc, not deflated");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("prefix only") << QByteArrayLiteral("\0\0\0\1");
    QTest::newRow("truncated") << good.left(good.size() - 6);
    QTest::newRow("nothing, deflated") << qCompress(QByteArray());
}

void TestOddReception::countsNothingForDataThatDoesNotInflate()
{
    QFETCH(QByteArray, payload);
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    peer.take();
    peer.sendChunk("ab");
    QCOMPARE(peer.take(), startData(4, 2));
    peer.sendBinary(payload);
    QCOMPARE(peer.take(), startData(4, 2));
    peer.sendChunk("cd");
    QCOMPARE(peer.take(), startData(4, 4));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcd"));
}

void TestOddReception::reportsATemporaryFileThatCannotBeReopened()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 3));
    peer.take();
    QVERIFY(QFile::remove(printer.temporaryFile()));
    QVERIFY(QDir().mkdir(printer.temporaryFile()));
    peer.sendChunk("abc");
    QCOMPARE(peer.take(), startData(3, 0, 2));
    QVERIFY(peer.expectNothing());
    // The reception goes on, and works again once the file can be had.
    QVERIFY(QDir().rmdir(printer.temporaryFile()));
    peer.sendChunk("abc");
    QCOMPARE(peer.take(), startData(3, 3));
    QCOMPARE(peer.take(), checkData(1));
}

void TestOddReception::countsDownByOneWhenAWriteFails()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 2 * chunkBytes));
    peer.take();
    // A device that is always full takes the temporary file's place.
    QVERIFY(QFile::remove(printer.temporaryFile()));
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), printer.temporaryFile()));
    peer.sendChunk(randomBytes(chunkBytes));
    QCOMPARE(peer.take(), startData(2 * chunkBytes, -1));
    QVERIFY(peer.expectNothing());
}

void TestOddReception::receivesThroughAHandleOutsideTheRegistry()
{
    TestPrinter printer;
    QDir::setCurrent(printer.dir()); // no server has told the handle where to
    ZyFileTransHandle stray(printer.server(), nullptr);
    stray.startFile(
        json(R"({"cmd":"START_FILE","filename":"a.zydlp","size":"5","offset":"0","key":"6"})"));
    stray.processBinary(qCompress("abcde"));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcde"));
}

ZY_TEST(TestOddReception)
#include "tst_oddreception.moc"
