// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// START_FILE and the data messages of a transfer from its beginning.

#include "memberaccess.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QDir>
#include <QTest>

#include <limits>
#include <optional>

using namespace zytest;

Q_DECLARE_METATYPE(std::optional<int>)

namespace
{

const QString modelName = QStringLiteral("a.zydlp");

} // namespace

class TestReception : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void acceptsANewTransfer();
    void receivesAFile_data();
    void receivesAFile();
    void tellsTheHostInOrder();
    void passesTheHostsCheckOn_data();
    void passesTheHostsCheckOn();
    void asksTheHostWithTheToken_data();
    void asksTheHostWithTheToken();
    void replacesAFileOfTheSameName();
    void storesInASubdirectory();
    void makesTheReceiveDirectoryCurrent();
    void receivesOneFileAfterTheOther();
    void echoesTheSizeAsItWasSent_data();
    void echoesTheSizeAsItWasSent();
};

void TestReception::acceptsANewTransfer()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 2000000));
    QCOMPARE(peer.take(), json(R"({"cmd":"START_FILE","errorcode":0,"compress":true,
        "filename":"a.zydlp","size":"2000000","offset":"0","key":"78563412"})"));
    QCOMPARE(entriesOf(printer.dir()), QStringList{QStringLiteral("wifi_tranfer.tmp")});
    QCOMPARE(QFileInfo(printer.temporaryFile()).size(), 2000000);
    QCOMPARE(printer.lastStatus(), 2);
    ZyFileTransHandle &handle = *printer.handles().first();
    QCOMPARE(valueOf(TmpFileName(), handle), QStringLiteral("wifi_tranfer.tmp"));
    QCOMPARE(valueOf(FileName(), handle), modelName);
    QCOMPARE(valueOf(TransFileSize(), handle), 2000000);
    QCOMPARE(valueOf(TransOffset(), handle), 0);
}

void TestReception::receivesAFile_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("one byte") << QByteArray(1, 'x');
    QTest::newRow("one byte less than a chunk") << compressibleBytes(chunkBytes - 1);
    QTest::newRow("exactly one chunk") << compressibleBytes(chunkBytes);
    QTest::newRow("one byte more than a chunk") << compressibleBytes(chunkBytes + 1);
    QTest::newRow("three chunks") << compressibleBytes(3 * chunkBytes);
    QTest::newRow("bytes that do not deflate") << randomBytes(2 * chunkBytes + 12345);
}

void TestReception::receivesAFile()
{
    QFETCH(QByteArray, contents);
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, contents.size()));
    QCOMPARE(peer.take(), accepted(modelName, QString::number(contents.size())));
    qint64 received = 0;
    const QList<QByteArray> chunks = chunksOf(contents);
    for (const QByteArray &chunk : chunks) {
        QVERIFY(QFile::exists(printer.temporaryFile()));
        peer.sendChunk(chunk);
        received += chunk.size();
        QCOMPARE(peer.take(), startData(contents.size(), received));
    }
    QCOMPARE(peer.take(), checkData(1));
    QVERIFY(peer.expectNothing());
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
    QVERIFY(readFile(printer.path(modelName)) == contents);
    QCOMPARE(printer.lastStatus(), 0);
}

void TestReception::tellsTheHostInOrder()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QStringList atStart;
    printer.host().during(QStringLiteral("fileTranStart"),
                          [&] { atStart = entriesOf(printer.dir()); });
    QStringList atFinish;
    int repliesAtFinish = 0;
    printer.host().during(QStringLiteral("finish"), [&] {
        atFinish = entriesOf(printer.dir());
        waitUntil([&] { return peer.texts().size() == 2; });
        spinOnce();
        repliesAtFinish = int(peer.texts().size());
    });
    peer.send(startFile(modelName, 3));
    peer.sendChunk("abc");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(
        printer.host().calls(),
        QStringList({QStringLiteral("getPrintState(0, , false)"), QStringLiteral("fileTranStart()"),
                     QStringLiteral("finish(a.zydlp, 0)")}));
    // The temporary file is not touched before the host knows, and is renamed before it checks.
    QCOMPARE(atStart, QStringList());
    QCOMPARE(atFinish, QStringList{modelName});
    // The acknowledgement has gone out by then, and CHECK_DATA has not.
    QCOMPARE(repliesAtFinish, 2);
}

void TestReception::passesTheHostsCheckOn_data()
{
    QTest::addColumn<std::optional<int>>("answer");
    QTest::addColumn<int>("checkState");
    QTest::newRow("no answer") << std::optional<int>() << 0;
    for (const int answer : {0, 1, 2, -7, std::numeric_limits<int>::max()})
        QTest::addRow("%d", answer) << std::optional<int>(answer) << answer;
}

void TestReception::passesTheHostsCheckOn()
{
    QFETCH(std::optional<int>, answer);
    QFETCH(int, checkState);
    TestPrinter printer;
    printer.host().answers.finish = answer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 1));
    peer.sendChunk("a");
    QVERIFY(peer.waitForReplies(3));
    peer.take();
    peer.take();
    QCOMPARE(peer.take(), checkData(checkState));
}

void TestReception::asksTheHostWithTheToken_data()
{
    QTest::addColumn<QJsonValue>("token");
    QTest::addColumn<QString>("call");
    const auto row = [](const char *name, const QJsonValue &token, const char *call) {
        QTest::newRow(name) << token << QString::fromLatin1(call);
    };
    row("absent", QJsonValue(QJsonValue::Undefined), "getPrintState(0, , false)");
    row("a text", QStringLiteral("secret"), "getPrintState(0, secret, true)");
    row("an empty text", QStringLiteral(""), "getPrintState(0, , true)");
    row("null", QJsonValue(), "getPrintState(0, , true)");
    row("a number", 5, "getPrintState(0, , true)");
    row("false", false, "getPrintState(0, , true)");
}

void TestReception::asksTheHostWithTheToken()
{
    QFETCH(QJsonValue, token);
    TestPrinter printer;
    RawPeer peer(printer.port());
    QJsonObject request = startFile(modelName, 1);
    request.insert(QStringLiteral("token"), token);
    peer.send(request);
    QCOMPARE(peer.take(), accepted(modelName, QStringLiteral("1")));
    QTEST(printer.host().calls().first(), "call");
}

void TestReception::replacesAFileOfTheSameName()
{
    TestPrinter printer;
    writeFile(printer.path(QStringLiteral("model.txt")), "an older and longer file");
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("model.txt"), 3));
    peer.sendChunk("new");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(readFile(printer.path(QStringLiteral("model.txt"))), QByteArrayLiteral("new"));
}

void TestReception::storesInASubdirectory()
{
    TestPrinter printer;
    QVERIFY(QDir(printer.dir()).mkdir(QStringLiteral("sub")));
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("sub/m.zydlp"), 3));
    peer.sendChunk("abc");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(readFile(printer.path(QStringLiteral("sub/m.zydlp"))), QByteArrayLiteral("abc"));
    QCOMPARE(printer.host().calls().last(), QStringLiteral("finish(sub/m.zydlp, 0)"));
}

void TestReception::makesTheReceiveDirectoryCurrent()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QDir::setCurrent(QDir::rootPath());
    peer.send(startFile(modelName, 3));
    QCOMPARE(peer.take(), accepted(modelName, QStringLiteral("3")));
    QCOMPARE(QDir::currentPath(), QDir(printer.dir()).canonicalPath());
}

void TestReception::receivesOneFileAfterTheOther()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    for (const char *name : {"first.txt", "second.txt", "first.txt"}) {
        const QString fileName = QString::fromLatin1(name);
        peer.send(startFile(fileName, 2));
        QCOMPARE(peer.take(), accepted(fileName, QStringLiteral("2")));
        peer.sendChunk("ab");
        QCOMPARE(peer.take(), startData(2, 2));
        QCOMPARE(peer.take(), checkData(1));
    }
    QCOMPARE(entriesOf(printer.dir()),
             QStringList({QStringLiteral("first.txt"), QStringLiteral("second.txt")}));
}

void TestReception::echoesTheSizeAsItWasSent_data()
{
    QTest::addColumn<QJsonValue>("size");
    QTest::addColumn<QString>("echo");
    QTest::addColumn<int>("bytes");
    const auto row = [](const char *name, const QJsonValue &size, const char *echo, int bytes) {
        QTest::newRow(name) << size << QString::fromLatin1(echo) << bytes;
    };
    row("leading zeros", QStringLiteral("0100"), "0100", 100);
    row("white space", QStringLiteral(" 100 "), " 100 ", 100);
    row("no number", QStringLiteral("many"), "many", 0);
    row("a JSON number", 100, "", 0);
    row("missing", QJsonValue(QJsonValue::Undefined), "", 0);
}

void TestReception::echoesTheSizeAsItWasSent()
{
    QFETCH(QJsonValue, size);
    QFETCH(QString, echo);
    QFETCH(int, bytes);
    TestPrinter printer;
    RawPeer peer(printer.port());
    QJsonObject request = startFile(modelName, 0);
    request.insert(QStringLiteral("size"), size);
    peer.send(request);
    QCOMPARE(peer.take(), accepted(modelName, echo));
    QCOMPARE(QFileInfo(printer.temporaryFile()).size(), bytes);
    peer.sendChunk("abc");
    QCOMPARE(peer.take(), startData(bytes, 3));
}

ZY_TEST(TestReception)
#include "tst_reception.moc"
