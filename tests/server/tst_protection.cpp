// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the host sees of a protected server: which questions it is spared, what it is told instead.

#include "memberaccess.h"
#include "modelfiles.h"
#include "rawpeer.h"
#include "rawtcppeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

using namespace zytest;

using Failure = ZyServerOptions::Failure;

namespace
{

const QString modelName = QStringLiteral("a.zydlp");
const char cancel[] = R"({"cmd":"CANCEL_FILE"})";

/// Notes what a server reports.
struct Reports {
    QList<Failure> kinds;
    QStringList reasons;

    ZyServerOptions attachedTo(ZyServerOptions options)
    {
        options.setFailureHandler([this](Failure what, const QString &why) {
            kinds.append(what);
            reasons.append(why);
        });
        return options;
    }
};

QJsonObject withDigest(QJsonObject request, const QByteArray &contents)
{
    const QByteArray digest = QCryptographicHash::hash(contents, QCryptographicHash::Sha256);
    request.insert(QStringLiteral("sha256"), QString::fromLatin1(digest.toHex()));
    return request;
}

} // namespace

class TestProtection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sparesTheHostARequestThatItRefuses_data();
    void sparesTheHostARequestThatItRefuses();
    void asksTheNameFilter();
    void asksTheHostForTheRest();
    void closesAfterTooManyWrongTokens();
    void keepsASecondTransferOutWhileTheHostSpins();
    void keepsAFinishedFileThatIsCancelledDuringItsCheck();
    void letsATransferTakeOverFromASilentOne();
    void doesNotTakeOverWhileTheHostChecks();
    void doesNotCountItsOwnStallsAgainstPeers();
    void sparesTheHostAFileOfAnotherDigest();
    void dropsAPeerThatDoesNotReadItsReplies();
    void reportsAReceptionThatCannotGoOn();
    void survivesAHostThatDeletesItOnATakeOver();
};

void TestProtection::sparesTheHostARequestThatItRefuses_data()
{
    QTest::addColumn<QJsonObject>("request");
    QTest::addColumn<QString>("reason");
    const QString token = QStringLiteral("token");
    const QString secret = QStringLiteral("secret");
    const auto authorized = [&](QJsonObject request) {
        request.insert(token, secret);
        return request;
    };
    QTest::newRow("no token") << startFile(modelName, 5)
                              << QStringLiteral("a transfer: wrong token");
    QTest::newRow("name") << authorized(startFile(QStringLiteral("../a"), 5))
                          << QStringLiteral("a transfer: its name is not accepted");
    QTest::newRow("size") << authorized(startFile(modelName, QStringLiteral("0")))
                          << QStringLiteral("a transfer: its size is not accepted");
    QTest::newRow("print") << authorized(json(R"({"cmd":"START_PRINT","filename":"/a"})"))
                           << QStringLiteral("a print: its name is not accepted");
    QTest::newRow("pause") << json(R"({"cmd":"PRINT_PAUSE","token":"guess"})")
                           << QStringLiteral("a pause: wrong token");
    QTest::newRow("stop") << json(R"({"cmd":"PRINT_STOP"})")
                          << QStringLiteral("a stop: wrong token");
    QTest::newRow("status") << json(R"({"cmd":"GET_PRINT_STATUS"})")
                            << QStringLiteral("the status: wrong token");
    QTest::newRow("parameters") << json(R"({"cmd":"PRINT_PARA_SET"})")
                                << QStringLiteral("parameters: wrong token");
}

void TestProtection::sparesTheHostARequestThatItRefuses()
{
    QFETCH(const QJsonObject, request);
    QFETCH(const QString, reason);
    Reports reports;
    ZyServerOptions options = reports.attachedTo(ZyServerOptions::hardened());
    options.setToken(QStringLiteral("secret"));
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    peer.send(request);
    QCOMPARE(peer.take().value(QStringLiteral("cmd")), request.value(QStringLiteral("cmd")));
    QCOMPARE(printer.host().calls(), QStringList());
    QCOMPARE(reports.kinds, QList<Failure>{Failure::Refused});
    QCOMPARE(reports.reasons, QStringList{reason});
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

void TestProtection::asksTheNameFilter()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    QStringList asked;
    options.setNameFilter([&asked](const QString &name) {
        asked.append(name);
        return name != modelName;
    });
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 5));
    QCOMPARE(peer.take(), refusal(1, 5));
    peer.send(startFile(QStringLiteral("a/b"), 5));
    QCOMPARE(peer.take(), refusal(1, 5));
    peer.send(startFile(QStringLiteral("b"), 5));
    QCOMPARE(peer.take(), accepted(QStringLiteral("b"), QStringLiteral("5")));
    QCOMPARE(asked, (QStringList{modelName, QStringLiteral("b")}));
}

void TestProtection::asksTheHostForTheRest()
{
    TestPrinter printer(ZyServerOptions::hardened());
    printer.host().answers.getPrintState = -1;
    RawPeer peer(printer.port());
    peer.send(startFile(modelName, 5));
    QCOMPARE(peer.take(), refusal(4, 6));
    QCOMPARE(printer.host().count(QStringLiteral("getPrintState")), 1);
}

void TestProtection::closesAfterTooManyWrongTokens()
{
    ZyServerOptions options;
    options.setToken(QStringLiteral("secret"));
    options.setMaxWrongTokens(2);
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    const QByteArray wrong = R"({"cmd":"PRINT_STOP","token":"guess"})";
    peer.ask(wrong);
    peer.ask(R"({"cmd":"PRINT_STOP","token":"secret"})");
    peer.ask(wrong);
    QVERIFY(peer.expectNothing());
    peer.ask(wrong);
    peer.ask(wrong);
    QVERIFY(waitUntil([&] { return !peer.isConnected(); }));
    QVERIFY(printer.waitForConnections(0));
}

void TestProtection::keepsASecondTransferOutWhileTheHostSpins()
{
    TestPrinter printer(ZyServerOptions::hardened());
    RawPeer peer(printer.port());
    RawPeer other(printer.port());
    printer.host().during(QStringLiteral("fileTranStart"), [&] {
        printer.host().during(QStringLiteral("fileTranStart"), {});
        other.send(startFile(QStringLiteral("other"), 3));
        QVERIFY(other.waitForReplies(1));
    });
    peer.send(startFile(modelName, 5));
    QCOMPARE(peer.take(), accepted(modelName, QStringLiteral("5")));
    QCOMPARE(other.take(), refusal(1, 3));
    peer.sendChunk("abcde");
    QCOMPARE(peer.take(), startData(5, 5));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcde"));
}

void TestProtection::keepsAFinishedFileThatIsCancelledDuringItsCheck()
{
    TestPrinter printer(ZyServerOptions::hardened());
    RawPeer peer(printer.port());
    printer.host().during(QStringLiteral("finish"), [&] {
        peer.send(cancel);
        QVERIFY(peer.waitForReplies(3)); // the offer's, the data's, the cancel's
    });
    peer.send(startFile(modelName, 5));
    peer.sendChunk("abcde");
    QVERIFY(peer.waitForReplies(4));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcde"));
}

void TestProtection::letsATransferTakeOverFromASilentOne()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setSilence(500);
    TestPrinter printer(options);
    RawPeer holder(printer.port()); // answers pings, as this test's event loop runs
    holder.send(startFile(modelName, 10));
    holder.sendChunk("abcde");
    QVERIFY(holder.waitForReplies(2));
    RawPeer other(printer.port());
    other.send(startFile(modelName, 10));
    QCOMPARE(other.take(), refusal(1, 3));
    QJsonObject reply;
    QVERIFY(waitUntil([&] {
        other.send(startFile(modelName, 10));
        reply = other.take();
        return reply.value(QStringLiteral("wifistate")) != 3;
    }));
    QCOMPARE(reply.value(QStringLiteral("offset")), QStringLiteral("5"));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
    QVERIFY(waitUntil([&] { return !holder.isConnected(); }));
    other.sendChunk("fghij");
    QCOMPARE(other.take(), startData(10, 10));
    QCOMPARE(other.take(), checkData(1));
    QCOMPARE(readFile(printer.path(modelName)), QByteArrayLiteral("abcdefghij"));
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 1);
}

void TestProtection::doesNotTakeOverWhileTheHostChecks()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setSilence(200);
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    RawPeer other(printer.port());
    QList<QJsonObject> answers;
    printer.host().during(QStringLiteral("finish"), [&] {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 600) {
            other.send(startFile(QStringLiteral("b"), 5));
            answers.append(other.take());
        }
    });
    peer.send(startFile(modelName, 5));
    peer.sendChunk("abcde");
    QVERIFY(peer.waitForReplies(3));
    QVERIFY(answers.size() > 1);
    for (const QJsonObject &answer : std::as_const(answers))
        QCOMPARE(answer, refusal(1, 3));
    QCOMPARE(json(peer.texts().last().toUtf8()), checkData(1));
}

void TestProtection::doesNotCountItsOwnStallsAgainstPeers()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setSilence(400);
    TestPrinter printer(options);
    RawPeer peer(printer.port());
    RawPeer other(printer.port());
    printer.host().during(QStringLiteral("sifGetVersionCheck"), [] { QTest::qSleep(1500); });
    QCOMPARE(peer.ask(R"({"cmd":"VERSION_CHECK"})"), json(R"({"version":"1"})"));
    printer.host().during(QStringLiteral("sifGetVersionCheck"), {});
    QVERIFY(peer.expectNothing());
    QVERIFY(other.expectNothing());
}

void TestProtection::sparesTheHostAFileOfAnotherDigest()
{
    Reports reports;
    TestPrinter printer(reports.attachedTo(ZyServerOptions::hardened()));
    RawPeer peer(printer.port());
    peer.send(withDigest(startFile(modelName, 5), "abcdX"));
    QCOMPARE(peer.take(), accepted(modelName, QStringLiteral("5")));
    peer.sendChunk("abcde");
    QCOMPARE(peer.take(), startData(5, 5));
    QCOMPARE(peer.take(), checkData(-1));
    QCOMPARE(printer.host().count(QStringLiteral("finish")), 0);
    QCOMPARE(entriesOf(printer.dir()), QStringList());
    QCOMPARE(reports.kinds, QList<Failure>{Failure::WrongDigest});
    peer.send(withDigest(startFile(modelName, 5), "abcde"));
    peer.sendChunk("abcde");
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(printer.host().count(QStringLiteral("finish")), 1);
}

void TestProtection::dropsAPeerThatDoesNotReadItsReplies()
{
    constexpr int replies = 64; // more than the kernel keeps of a MiB each
    Reports reports;
    TestPrinter printer(reports.attachedTo(ZyServerOptions::hardened()));
    printer.host().answers.version = QString(chunkBytes, QLatin1Char('v'));
    RawTcpPeer peer(printer.port());
    QVERIFY(peer.isConnected());
    peer.socket().setReadBufferSize(1);
    for (int i = 0; i < replies; ++i)
        peer.sendText(R"({"cmd":"VERSION_CHECK"})");
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(reports.kinds, QList<Failure>{Failure::Dropped});
    QCOMPARE(reports.reasons, QStringList{QStringLiteral("replies are not read")});
}

void TestProtection::reportsAReceptionThatCannotGoOn()
{
    Reports reports;
    TestPrinter printer(reports.attachedTo({}));
    {
        RawPeer peer(printer.port());
        peer.send(startFile(modelName, 10));
        peer.sendChunk("abcde");
        QVERIFY(peer.waitForReplies(2));
        QVERIFY(QFile::remove(printer.temporaryFile()));
    }
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(reports.kinds, QList<Failure>{Failure::NotResumable});
    QCOMPARE(reports.reasons, QStringList{modelName});
    {
        RawPeer peer(printer.port());
        peer.send(startFile(modelName, 10));
        peer.sendChunk("abcde");
        QVERIFY(peer.waitForReplies(2));
    }
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(reports.kinds.size(), 1);
}

void TestProtection::survivesAHostThatDeletesItOnATakeOver()
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setSilence(200);
    TestPrinter printer(options);
    RawPeer holder(printer.port());
    holder.send(startFile(modelName, 10));
    QVERIFY(holder.waitForReplies(1));
    printer.host().during(QStringLiteral("fileTranDisconnet"), [&] { printer.destroyServer(); });
    RawPeer other(printer.port());
    QVERIFY(waitUntil([&] {
        other.send(startFile(modelName, 10));
        return waitUntil([&] { return !printer.server() || !other.texts().isEmpty(); })
            && (!printer.server() || !other.takeText().isNull()) && !printer.server();
    }));
}

ZY_TEST(TestProtection)
#include "tst_protection.moc"
