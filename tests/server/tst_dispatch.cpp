// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which command reaches which handler, and what reaches none.

#include "logcapture.h"
#include "memberaccess.h"
#include "rawpeer.h"
#include "testprinter.h"
#include "testprogram.h"
#include "vocabulary.h"
#include "wirejson.h"

#include <QTest>

#include <limits>

using namespace zytest;

namespace
{

/// The vocabulary's messages; a word that is no request as a request without other keys.
void addMessages()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QJsonObject>("sampleReply");
    for (const zyws::Message &message : zyws::messages) {
        const bool isRequest = !message.request.isEmpty();
        QTest::newRow(message.word.data())
            << (isRequest ? QByteArray(message.request.data())
                          : QByteArray("{\"cmd\":\"") + message.word.data() + "\"}")
            << (isRequest && !message.reply.isEmpty() ? json(message.reply.data()) : QJsonObject());
    }
}

/// "key:type" for each key, sorted.
QStringList shapeOf(const QJsonObject &message)
{
    QStringList shape;
    for (auto member = message.begin(); member != message.end(); ++member)
        shape += QStringLiteral("%1:%2").arg(member.key()).arg(int(member.value().type()));
    return shape;
}

} // namespace

class TestDispatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsIdle();
    void reachesTheHandler_data();
    void reachesTheHandler();
    void answersEachRequestWithTheKeysOfTheTable_data() { addMessages(); }
    void answersEachRequestWithTheKeysOfTheTable();
    void answersEachRequestWithoutAHost_data() { addMessages(); }
    void answersEachRequestWithoutAHost();
    void readsAMessageWithWhiteSpace();

    void ignores_data();
    void ignores();
    void logsTheCommandWord_data();
    void logsTheCommandWord();
    void standsAloneWithoutAServer();
    void namesCommandResults_data();
    void namesCommandResults();
    void namesPrinterStates_data();
    void namesPrinterStates();
};

void TestDispatch::startsIdle()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    ZyFileTransHandle &handle = *printer.handles().first();
    QCOMPARE(handle.status(), 0);
    QCOMPARE(valueOf(FileDir(), handle), printer.dir());
    QCOMPARE(valueOf(IsCompress(), handle), true);
    QCOMPARE(valueOf(IsReceiving(), handle), false);
    QCOMPARE(valueOf(PrintState(), handle), 0);
}

void TestDispatch::reachesTheHandler_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QString>("firstCall");
    QTest::addColumn<QJsonObject>("firstReply");
    const auto row = [](const char *command, const char *call, const char *reply) {
        QTest::newRow(command) << QByteArray("{\"cmd\":\"") + command + "\"}"
                               << QString::fromLatin1(call) << json(reply);
    };
    row("GET_PRINT_STATUS", "sigGetPrinterStatus(||||||||||||0, )",
        R"({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_GENERAL","filename":"",
            "sliceLayerCount":"","curSliceLayer":"","printRemainTime":"","initExposure":"",
            "delayLight":"","printExposure":"","printHeight":"","eleSpeed":"",
            "bottomExposureNum":"","layerThickness":"","resin":""})");
    row("START_FILE", "getPrintState(0, , false)",
        R"({"cmd":"START_FILE","errorcode":0,"compress":true,"filename":"","size":"",
            "offset":"0","key":""})");
    row("CANCEL_FILE", "cancle()", R"({"cmd":"CANCEL_FILE","errorcode":0})");
    row("START_PRINT", "getFilePrintState(0, , true)",
        R"({"cmd":"START_PRINT","status":"CHECKING","filename":""})");
    row("PRINT_PAUSE", "sigDoPrintPause(0, )", R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})");
    row("PRINT_STOP", "sigDoPrintStop(0, )", R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})");
    row("VERSION_CHECK", "sifGetVersionCheck()", R"({"version":"1"})");
    row("PRINT_PARA_SET", "sigSetPrintPara(||||||||||||0, )",
        R"({"cmd":"PRINT_PARA_SET","status":""})");
}

void TestDispatch::reachesTheHandler()
{
    QFETCH(QByteArray, request);
    TestPrinter printer;
    RawPeer peer(printer.port());
    QTEST(peer.ask(request), "firstReply");
    QVERIFY(waitUntil([&] { return !printer.host().calls().isEmpty(); }));
    QTEST(printer.host().calls().first(), "firstCall");
}

void TestDispatch::answersEachRequestWithTheKeysOfTheTable()
{
    QFETCH(QByteArray, request);
    QFETCH(QJsonObject, sampleReply);
    TestPrinter printer;
    RawPeer peer(printer.port());
    if (!sampleReply.isEmpty()) {
        QCOMPARE(shapeOf(peer.ask(request)), shapeOf(sampleReply));
        return;
    }
    peer.send(request);
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sifGetVersionCheck()")});
}

void TestDispatch::answersEachRequestWithoutAHost()
{
    QFETCH(QByteArray, request);
    QFETCH(QJsonObject, sampleReply);
    const QTemporaryDir directory;
    const ZySslEchoServer server(0, {}, {}, directory.path(), nullptr);
    RawPeer peer(server.serverPort());
    peer.send(request);
    if (!sampleReply.isEmpty())
        QCOMPARE(peer.take().value(QLatin1String("cmd")), sampleReply.value(QLatin1String("cmd")));
    QVERIFY(peer.expectNothing());
}

void TestDispatch::readsAMessageWithWhiteSpace()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(" {\n\t\"x\" : [ { } ] , \"cmd\" : \"VERSION_CHECK\" }\n"),
             json(R"({"version":"1"})"));
}

void TestDispatch::ignores_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(text);
    };
    row("lower case", R"({"cmd":"start_print"})");
    row("mixed case", R"({"cmd":"Version_Check"})");
    row("a space before", R"({"cmd":" VERSION_CHECK"})");
    row("a space after", R"({"cmd":"VERSION_CHECK "})");
    row("a beginning only", R"({"cmd":"VERSION"})");
    row("a longer word", R"({"cmd":"PRINT_STOPING"})");
    row("an unknown word", R"({"cmd":"FORMAT_DISK"})");
    row("an empty word", R"({"cmd":""})");
    row("the number of a command", R"({"cmd":9})");
    row("null", R"({"cmd":null})");
    row("an array", R"({"cmd":["VERSION_CHECK"]})");
    row("an object", R"({"cmd":{"cmd":"VERSION_CHECK"}})");
    row("another letter case of the key", R"({"CMD":"VERSION_CHECK"})");
    row("no cmd", R"({"token":"t"})");
    row("an empty object", "{}");
    row("an array of objects", R"([{"cmd":"VERSION_CHECK"}])");
    row("an array of numbers", "[1,2]");
    row("a JSON text", R"("x")");
    row("truncated JSON", R"({"cmd":"VERSION_CHECK")");
    row("no JSON", "VERSION_CHECK");
    row("an empty message", "");
}

void TestDispatch::ignores()
{
    QFETCH(QString, text);
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.sendText(text);
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sifGetVersionCheck()")});
    QCOMPARE(printer.lastStatus(), 0);
}

void TestDispatch::logsTheCommandWord_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, const char *text, const char *line) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(line);
    };
    row("a command", R"({"cmd":"PRINT_STOP"})", R"(strCmd: "PRINT_STOP")");
    row("an unknown word", R"({"cmd":"a \"quoted\" word"})", R"(strCmd: "a \"quoted\" word")");
    row("a number", R"({"cmd":9})", R"(strCmd: "")");
    row("no cmd", "{}", R"(strCmd: "")");
    row("no JSON", "no JSON", R"(strCmd: "")");
}

void TestDispatch::logsTheCommandWord()
{
    QFETCH(QString, text);
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    LogCapture log;
    peer.sendText(text);
    QVERIFY(waitUntil([&] { return !log.lines().isEmpty(); }));
    QTEST(log.texts().first(), "line");
    QVERIFY(waitUntil([&] { return peer.texts().size() == printer.host().calls().size(); }));
    QCOMPARE(log.lines().size(), 1);
}

void TestDispatch::standsAloneWithoutAServer()
{
    QObject notAServer;
    ZyFileTransHandle handle(&notAServer, nullptr);
    QCOMPARE(handle.status(), 0);
    QCOMPARE(valueOf(IsCompress(), handle), true);
    QCOMPARE(valueOf(FileDir(), handle), QString());
    QCOMPARE(valueOf(Key(), handle), QString());
    QCOMPARE(valueOf(FileName(), handle), QString());
    QCOMPARE(valueOf(TmpFileName(), handle), QString());
    QCOMPARE(valueOf(TransFileSize(), handle), 0);
    QCOMPARE(valueOf(TransOffset(), handle), 0);
    // None of these needs a server.
    handle.processJson(json(R"({"cmd":"CHECK_DATA"})"));
    handle.processBinary(qCompress("data"));
    handle.saveKeyInfo();
    QCOMPARE(handle.getKeyInfo(), QJsonObject());
    handle.onDisconnect();
    QCOMPARE(handle.status(), 0);
}

void TestDispatch::namesCommandResults_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("word");
    QTest::newRow("6") << 6 << QStringLiteral("TOKEN_ERROR");
    QTest::newRow("7") << 7 << QStringLiteral("CMD_SUCCES");
    QTest::newRow("8") << 8 << QStringLiteral("CMD_FAIL");
    for (const int code : {0, 1, 5, 9, -1, 6 + 256, std::numeric_limits<int>::min(),
                           std::numeric_limits<int>::max()})
        QTest::addRow("%d", code) << code << QString();
}

void TestDispatch::namesCommandResults()
{
    QFETCH(int, code);
    ZyFileTransHandle handle(nullptr, nullptr);
    QTEST(handle.getCmdExeStatusKey(code), "word");
}

void TestDispatch::namesPrinterStates_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("word");
    QTest::newRow("0") << 0 << QStringLiteral("PRINT_GENERAL");
    QTest::newRow("6") << 6 << QStringLiteral("PRINT_STOPING");
    QTest::newRow("8") << 8 << QStringLiteral("TOKEN_ERROR");
    for (const int code :
         {-1, 9, 256, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d", code) << code << QString();
}

void TestDispatch::namesPrinterStates()
{
    QFETCH(int, code);
    ZyFileTransHandle handle(nullptr, nullptr);
    QTEST(handle.getPrintStatusKey(code), "word");
}

ZY_TEST(TestDispatch)
#include "tst_dispatch.moc"
