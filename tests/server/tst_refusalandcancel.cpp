// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// START_FILE refused or impossible, and CANCEL_FILE.

#include "memberaccess.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QDir>
#include <QTest>

#include <optional>

using namespace zytest;

Q_DECLARE_METATYPE(std::optional<int>)

namespace
{

const QString modelName = QStringLiteral("a.zydlp");
const char cancelFile[] = R"({"cmd":"CANCEL_FILE"})";
const char cancelReply[] = R"({"cmd":"CANCEL_FILE","errorcode":0})";

} // namespace

class TestRefusalAndCancel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cancelsBeforeAnyData();
    void cancelsAfterData();
    void cancelsOnAFreshConnection();
    void echoesEveryKeyOfACancel();
    void startsAnewAfterACancel();
    void deletesTheFinishedFileOnALateCancel();
    void keepsWhatAnEarlierConnectionLeft();
    void resetsTheCountersOnlyWhenTheFileWasOpen();

    void refusesAsTheHostSays_data();
    void refusesAsTheHostSays();
    void refusesWhileAnyConnectionReceives();
    void refusesWhileAPrintFileIsChecked();
    void overwritesTheAnnouncedSizeWhenItRefuses();
    void overwritesTheSizeOfItsOwnReceptionWhenItRefuses();
    void reportsASizeThatCannotBeHad_data();
    void reportsASizeThatCannotBeHad();
    void reportsADirectoryThatIsGone();
    void repliesWithoutACommandWordWhenTheTemporaryFileIsUnreadable();
};

void TestRefusalAndCancel::cancelsBeforeAnyData()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 100));
    peer.take();
    QCOMPARE(peer.ask(cancelFile), json(cancelReply));
    QVERIFY(peer.expectNothing());
    QCOMPARE(entriesOf(printer.dir()), QStringList());
    QCOMPARE(printer.lastStatus(), 0);
    QCOMPARE(
        printer.host().calls(),
        QStringList({QStringLiteral("getPrintState(0, , false)"), QStringLiteral("fileTranStart()"),
                     QStringLiteral("cancle()"), QStringLiteral("sifGetVersionCheck()")}));
}

void TestRefusalAndCancel::cancelsAfterData()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 100));
    peer.sendChunk("abc");
    QVERIFY(peer.waitForReplies(2));
    peer.take();
    peer.take();
    QCOMPARE(peer.ask(cancelFile), json(cancelReply));
    QCOMPARE(entriesOf(printer.dir()), QStringList());
    peer.sendChunk("def");
    QVERIFY(peer.expectNothing());
    QVERIFY(peer.close());
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 0);
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

void TestRefusalAndCancel::cancelsOnAFreshConnection()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(cancelFile), json(cancelReply));
    QCOMPARE(peer.ask(cancelFile), json(cancelReply));
    QCOMPARE(printer.host().calls(),
             QStringList({QStringLiteral("cancle()"), QStringLiteral("cancle()")}));
}

void TestRefusalAndCancel::echoesEveryKeyOfACancel()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(R"({"cmd":"CANCEL_FILE","token":"t","errorcode":"9","n":1.5,"l":[1,null],
                         "o":{"cmd":"x"},"b":false})"),
             json(R"({"cmd":"CANCEL_FILE","token":"t","errorcode":0,"n":1.5,"l":[1,null],
                     "o":{"cmd":"x"},"b":false})"));
}

void TestRefusalAndCancel::startsAnewAfterACancel()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    peer.sendChunk("ab");
    peer.send(QByteArray(cancelFile));
    QVERIFY(peer.waitForReplies(3));
    peer.take();
    peer.take();
    peer.take();
    peer.send(startFile(modelName, 4));
    QCOMPARE(peer.take(), json(R"({"cmd":"START_FILE","errorcode":0,"compress":true,
        "filename":"a.zydlp","size":"4","offset":"0","key":"78563412"})"));
    peer.sendChunk("wxyz");
    QCOMPARE(peer.take(), startData(4, 4));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("wxyz"));
}

void TestRefusalAndCancel::deletesTheFinishedFileOnALateCancel()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 2));
    peer.sendChunk("ab");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
    peer.send(QByteArray(cancelFile));
    QVERIFY(peer.waitForReplies(4));
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

void TestRefusalAndCancel::keepsWhatAnEarlierConnectionLeft()
{
    TestPrinter printer;
    {
        RawPeer peer(printer.port());
        peer.send(startFile(modelName, 100));
        peer.take();
        QVERIFY(peer.close());
    }
    QVERIFY(printer.waitForConnections(0));
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(cancelFile), json(cancelReply));
    QCOMPARE(entriesOf(printer.dir()), QStringList{QStringLiteral("wifi_tranfer.tmp")});
}

void TestRefusalAndCancel::resetsTheCountersOnlyWhenTheFileWasOpen()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 100));
    peer.send(QByteArray(cancelFile));
    QVERIFY(peer.waitForReplies(2));
    QCOMPARE(valueOf(TransFileSize(), *printer.handles().first()), 100);

    peer.send(startFile(modelName, 100));
    peer.sendChunk("abc");
    QVERIFY(peer.waitForReplies(4));
    QCOMPARE(valueOf(TransOffset(), *printer.handles().first()), 3);
    peer.send(QByteArray(cancelFile));
    QVERIFY(peer.waitForReplies(5));
    QCOMPARE(valueOf(TransFileSize(), *printer.handles().first()), 0);
    QCOMPARE(valueOf(TransOffset(), *printer.handles().first()), 0);
}

void TestRefusalAndCancel::refusesAsTheHostSays_data()
{
    QTest::addColumn<std::optional<int>>("answer");
    QTest::addColumn<QJsonObject>("reply");
    QTest::newRow("token rejected") << std::optional<int>(-1) << refusal(4, 6);
    QTest::newRow("refused") << std::optional<int>(0) << refusal(1, 5);
    QTest::newRow("neither yes nor no") << std::optional<int>(2) << refusal(1, 5);
    QTest::newRow("no answer") << std::optional<int>() << refusal(1, 5);
}

void TestRefusalAndCancel::refusesAsTheHostSays()
{
    QFETCH(std::optional<int>, answer);
    TestPrinter printer;
    printer.host().answers.getPrintState = answer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 100));
    QTEST(peer.take(), "reply");
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.host().count(QStringLiteral("fileTranStart")), 0);
    QCOMPARE(entriesOf(printer.dir()), QStringList());
    QCOMPARE(printer.lastStatus(), 0);
    peer.sendChunk("abc");
    QVERIFY(peer.expectNothing());
}

void TestRefusalAndCancel::refusesWhileAnyConnectionReceives()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    RawPeer other(printer.port());
    receiving.send(startFile(modelName, 4));
    receiving.take();
    printer.host().takeCalls();
    other.send(startFile(QStringLiteral("b.zydlp"), 100));
    QCOMPARE(other.take(), refusal(1, 3));
    receiving.send(startFile(QStringLiteral("b.zydlp"), 4));
    QCOMPARE(receiving.take(), refusal(1, 3));
    // The host is not even asked, and the reception goes on.
    QCOMPARE(printer.host().takeCalls(), QStringList());
    receiving.sendChunk("abcd");
    QCOMPARE(receiving.take(), startData(4, 4));
    QCOMPARE(receiving.take(), checkData(1));
    QCOMPARE(entriesOf(printer.dir()), QStringList{modelName});
}

void TestRefusalAndCancel::refusesWhileAPrintFileIsChecked()
{
    TestPrinter printer;
    RawPeer printing(printer.port());
    RawPeer sending(printer.port());
    QJsonObject reply;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        sending.send(startFile(modelName, 4));
        reply = sending.take();
    });
    printing.send(QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":"p"})"));
    QVERIFY(printing.waitForReplies(2));
    QCOMPARE(reply, refusal(1, 4));
    QCOMPARE(printer.host().count(QStringLiteral("getPrintState")), 0);
}

void TestRefusalAndCancel::overwritesTheAnnouncedSizeWhenItRefuses()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    receiving.send(startFile(modelName, 4));
    receiving.take();
    RawPeer other(printer.port());
    other.send(startFile(QStringLiteral("b.zydlp"), 100));
    QCOMPARE(other.take(), refusal(1, 3));
    QCOMPARE(valueOf(TransFileSize(), *printer.handles().last()), 100);
    QCOMPARE(valueOf(TransFileSize(), *printer.handles().first()), 4);
}

void TestRefusalAndCancel::overwritesTheSizeOfItsOwnReceptionWhenItRefuses()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 100));
    peer.take();
    peer.send(startFile(modelName, 3));
    QCOMPARE(peer.take(), refusal(1, 3));
    peer.sendChunk("abcdef");
    QCOMPARE(peer.take(), startData(3, 6));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abc"));
}

void TestRefusalAndCancel::reportsASizeThatCannotBeHad_data()
{
    QTest::addColumn<QString>("size");
    QTest::newRow("negative") << QStringLiteral("-1");
    QTest::newRow("smallest") << QStringLiteral("-9223372036854775808");
    QTest::newRow("largest") << QStringLiteral("9223372036854775807");
}

void TestRefusalAndCancel::reportsASizeThatCannotBeHad()
{
    QFETCH(QString, size);
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, size));
    QCOMPARE(peer.take(), json(R"({"cmd":"START_FILE","errorcode":2,"compress":true})"));
    QCOMPARE(printer.lastStatus(), 0);
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.host().count(QStringLiteral("fileTranStart")), 1);
}

void TestRefusalAndCancel::reportsADirectoryThatIsGone()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QDir::setCurrent(printer.dir());
    QVERIFY(QDir(printer.dir()).removeRecursively());
    peer.send(startFile(modelName, 4));
    QCOMPARE(peer.take(), json(R"({"cmd":"START_FILE","errorcode":2,"compress":true})"));
    QCOMPARE(printer.lastStatus(), 0);
}

void TestRefusalAndCancel::repliesWithoutACommandWordWhenTheTemporaryFileIsUnreadable()
{
    TestPrinter printer;
    QVERIFY(QDir().mkdir(printer.temporaryFile()));
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 4));
    QCOMPARE(peer.take(), json(R"({"errorcode":2,"compress":true})"));
    QCOMPARE(printer.lastStatus(), 0);
    // With an empty key even the empty object matches, and the reply is all there is of it.
    peer.send(startFile(modelName, QStringLiteral("4"), {}));
    QCOMPARE(peer.take(), json(R"({"compress":true})"));
    QCOMPARE(printer.lastStatus(), 2);
}

ZY_TEST(TestRefusalAndCancel)
#include "tst_refusalandcancel.moc"
