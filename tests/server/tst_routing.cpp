// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which connection's handle gets a message, and which connection gets the reply.

#include "modelfiles.h"
#include "rawpeer.h"
#include "rawtcppeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWebSocketServer>

#include <memory>

using namespace zytest;

namespace
{

const char versionCheck[] = R"({"cmd":"VERSION_CHECK"})";
const char versionReply[] = R"({"version":"1"})";

} // namespace

class TestRouting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersOnlyTheConnectionThatAsked();
    void keepsTheOrderOfOneConnectionsMessages();
    void writesDataFromAnotherConnectionAndAcknowledgesItThere();
    void completesAFileWithAnotherConnectionsData();
    void handsForeignDataOnlyToTheReceivingHandle();
    void handlesATextInSeveralFramesOnce();
    void handlesATextSplitOverSegmentsOnce();
    void handlesADataMessageInSeveralFramesOnce();
    void obeysARequestThatACloseFollows();
    void sendsAHostsMessageToTheConnectionBeingServed_data();
    void sendsAHostsMessageToTheConnectionBeingServed();
    void handsATextToEveryHandleWhenAsked();
    void answersASocketThatTheHostConnected();

    void sendsNothingOutsideADelivery();
    void sendsNothingFromATimerOrAQueuedCall();
    void sendsNothingInsideARelayedSignal_data();
    void sendsNothingInsideARelayedSignal();
    void dropsATextThatNoConnectionSent();
    void writesDataThatNoConnectionSentWithoutAReply();
    void ignoresADisconnectThatNoConnectionHad();
    void answersNothingToDataWhileNobodyReceives();
    void convertsTextsLikeTheWire();
};

void TestRouting::answersOnlyTheConnectionThatAsked()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawPeer second(printer.port());
    QCOMPARE(second.ask(versionCheck), json(versionReply));
    QVERIFY(first.expectNothing());
    QCOMPARE(first.ask(R"({"cmd":"PRINT_PAUSE"})"),
             json(R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})"));
    QVERIFY(second.expectNothing());
}

void TestRouting::keepsTheOrderOfOneConnectionsMessages()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("a.txt"), 4));
    peer.sendChunk("ab");
    peer.send(QByteArray(versionCheck));
    peer.sendChunk("cd");
    peer.send(QByteArrayLiteral(R"({"cmd":"PRINT_STOP"})"));
    QVERIFY(peer.waitForReplies(6));
    QCOMPARE(peer.take().value(QStringLiteral("cmd")), QJsonValue(QStringLiteral("START_FILE")));
    QCOMPARE(peer.take(), startData(4, 2));
    QCOMPARE(peer.take(), json(versionReply));
    QCOMPARE(peer.take(), startData(4, 4));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(peer.take(), json(R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})"));
    QCOMPARE(readFile(printer.path(QStringLiteral("a.txt"))), QByteArrayLiteral("abcd"));
}

void TestRouting::writesDataFromAnotherConnectionAndAcknowledgesItThere()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    RawPeer other(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 6));
    receiving.take();
    other.sendChunk("xyz");
    QCOMPARE(other.take(), startData(6, 3));
    receiving.sendChunk("abc");
    QCOMPARE(receiving.take(), startData(6, 6));
    QCOMPARE(receiving.take(), checkData(1));
    QVERIFY(other.expectNothing());
    QCOMPARE(readFile(printer.path(QStringLiteral("a.txt"))), QByteArrayLiteral("xyzabc"));
}

void TestRouting::completesAFileWithAnotherConnectionsData()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    RawPeer other(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 3));
    receiving.take();
    other.sendChunk("xyz");
    QCOMPARE(other.take(), startData(3, 3));
    QCOMPARE(other.take(), checkData(1));
    QVERIFY(receiving.expectNothing());
    QCOMPARE(readFile(printer.path(QStringLiteral("a.txt"))), QByteArrayLiteral("xyz"));
}

void TestRouting::handsForeignDataOnlyToTheReceivingHandle()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawPeer second(printer.port());
    RawPeer third(printer.port());
    second.send(startFile(QStringLiteral("a.txt"), 4));
    second.take();
    first.sendChunk("ab");
    third.sendChunk("cd");
    // One acknowledgement each, since only one of the three handles takes the data.
    QVERIFY(first.waitForReplies(1));
    QVERIFY(third.waitForReplies(1));
    first.take();
    QCOMPARE(printer.host().count(QStringLiteral("finish")), 1);
    QVERIFY(first.expectNothing());
    QVERIFY(second.expectNothing());
    QCOMPARE(readFile(printer.path(QStringLiteral("a.txt"))).size(), 4);
}

void TestRouting::handlesATextInSeveralFramesOnce()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    peer.sendFragments(RawTcpPeer::Text, {R"({"cmd":)", R"("VERSION)", {}, R"(_CHECK"})"});
    QCOMPARE(peer.takeText(), QString::fromLatin1(versionReply));
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sifGetVersionCheck()")});
}

void TestRouting::handlesATextSplitOverSegmentsOnce()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    RawPeer clock(printer.port());
    const QByteArray frame = RawTcpPeer::frame(RawTcpPeer::Text, versionCheck);
    for (int split = 1; split < frame.size(); ++split) {
        peer.write(frame.left(split));
        // The server has read the first part once it has answered another peer.
        QVERIFY(clock.expectNothing());
        QCOMPARE(peer.texts(), QStringList());
        peer.write(frame.mid(split));
        QCOMPARE(peer.takeText(), QString::fromLatin1(versionReply));
    }
    QCOMPARE(printer.host().calls().size(), 2 * (frame.size() - 1));
}

void TestRouting::handlesADataMessageInSeveralFramesOnce()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    peer.sendText(QJsonDocument(startFile(QStringLiteral("a.txt"), 5)).toJson());
    QVERIFY(!peer.takeText().isNull());
    const QByteArray payload = qCompress("abcde");
    peer.sendFragments(RawTcpPeer::Binary, {payload.left(3), payload.mid(3, 5), payload.mid(8)});
    QCOMPARE(json(peer.takeText().toUtf8()), startData(5, 5));
    QCOMPARE(json(peer.takeText().toUtf8()), checkData(1));
    QCOMPARE(readFile(printer.path(QStringLiteral("a.txt"))), QByteArrayLiteral("abcde"));
}

void TestRouting::obeysARequestThatACloseFollows()
{
    TestPrinter printer;
    RawTcpPeer peer(printer.port());
    // One segment, so that the connection has ended when the request is handled.
    peer.write(RawTcpPeer::frame(RawTcpPeer::Text, R"({"cmd":"PRINT_STOP","token":"t"})")
               + RawTcpPeer::frame(RawTcpPeer::Close, {}));
    QVERIFY(waitUntil([&] { return peer.isEnded(); }));
    QVERIFY(printer.waitForConnections(0));
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sigDoPrintStop(0, t)")});
}

void TestRouting::sendsAHostsMessageToTheConnectionBeingServed_data()
{
    QTest::addColumn<QByteArray>("request");
    const auto row = [](const char *signal, const char *command) {
        QTest::newRow(signal) << QByteArray("{\"cmd\":\"") + command + "\"}";
    };
    row("getPrintState", "START_FILE");
    row("getFilePrintState", "START_PRINT");
    row("sifGetVersionCheck", "VERSION_CHECK");
    row("sigDoPrintPause", "PRINT_PAUSE");
    row("sigDoPrintStop", "PRINT_STOP");
    row("sigGetPrinterStatus", "GET_PRINT_STATUS");
    row("sigSetPrintPara", "PRINT_PARA_SET");
}

void TestRouting::sendsAHostsMessageToTheConnectionBeingServed()
{
    QFETCH(QByteArray, request);
    TestPrinter printer;
    RawPeer other(printer.port());
    RawPeer peer(printer.port());
    printer.host().during(QString::fromLatin1(QTest::currentDataTag()), [&printer] {
        printer.server()->sendJsonMessage(json(R"({"from":"host"})"));
    });
    QCOMPARE(peer.ask(request), json(R"({"from":"host"})"));
    QVERIFY(!peer.take().isEmpty());
    QCOMPARE(other.texts(), QStringList());
}

void TestRouting::handsATextToEveryHandleWhenAsked()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawPeer second(printer.port());
    QVERIFY(printer.waitForConnections(2));
    const QString text = QStringLiteral(R"({"cmd":"PRINT_STOP","token":"t"})");
    printer.server()->onTextMessageReceived(text);
    QCOMPARE(printer.host().takeCalls(),
             QStringList(
                 {QStringLiteral("sigDoPrintStop(0, t)"), QStringLiteral("sigDoPrintStop(0, t)")}));
    QVERIFY(first.expectNothing());
    QVERIFY(second.expectNothing());

    // Inside a delivery every reply goes to the connection being served.
    printer.host().during(QStringLiteral("sifGetVersionCheck"),
                          [&] { printer.server()->onTextMessageReceived(text); });
    second.send(QByteArray(versionCheck));
    QVERIFY(second.waitForReplies(3));
    QCOMPARE(second.take(), json(R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})"));
    QCOMPARE(second.take(), json(R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})"));
    QCOMPARE(second.take(), json(versionReply));
    QCOMPARE(first.texts(), QStringList());
}

void TestRouting::answersASocketThatTheHostConnected()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    // A socket of the host's own, whose other end asks and listens.
    QWebSocketServer elsewhere({}, QWebSocketServer::NonSecureMode);
    QVERIFY(elsewhere.listen(QHostAddress::LocalHost));
    QWebSocket socket;
    connect(&socket, &QWebSocket::textMessageReceived, printer.server(),
            &ZySslEchoServer::onTextMessageReceived);
    socket.open(elsewhere.serverUrl());
    QVERIFY(waitUntil([&] { return elsewhere.hasPendingConnections(); }));
    const std::unique_ptr<QWebSocket> asking(elsewhere.nextPendingConnection());
    QSignalSpy replies(asking.get(), &QWebSocket::textMessageReceived);
    asking->sendTextMessage(QString::fromLatin1(versionCheck));
    QVERIFY(waitUntil([&] { return !replies.isEmpty(); }));
    QCOMPARE(replies.first().first().toString(), QString::fromLatin1(versionReply));
    QVERIFY(peer.expectNothing());
    QCOMPARE(replies.size(), 1);
}

void TestRouting::sendsNothingOutsideADelivery()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    printer.server()->sendJsonMessage(json(R"({"from":"host"})"));
    printer.handles().first()->sendMessage(json(R"({"from":"handle"})"));
    QVERIFY(peer.expectNothing());
    printer.server()->sendJsonMessage(json(R"({"from":"host, after a delivery"})"));
    QVERIFY(peer.expectNothing());
}

void TestRouting::sendsNothingFromATimerOrAQueuedCall()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    int sent = 0;
    const auto sendLate = [&] {
        printer.server()->sendJsonMessage(json(R"({"from":"host"})"));
        ++sent;
    };
    printer.host().during(QStringLiteral("sifGetVersionCheck"), [&] {
        QTimer::singleShot(0, printer.server(), sendLate);
        QMetaObject::invokeMethod(printer.server(), sendLate, Qt::QueuedConnection);
    });
    QCOMPARE(peer.ask(versionCheck), json(versionReply));
    QVERIFY(waitUntil([&] { return sent == 2; }));
    printer.host().during(QStringLiteral("sifGetVersionCheck"), {});
    QVERIFY(peer.expectNothing());
}

void TestRouting::sendsNothingInsideARelayedSignal_data()
{
    QTest::addColumn<QString>("signal");
    for (const char *signal : {"fileTranStart", "finish", "cancle", "checkFile"})
        QTest::newRow(signal) << QString::fromLatin1(signal);
}

void TestRouting::sendsNothingInsideARelayedSignal()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QFETCH(QString, signal);
    printer.host().during(
        signal, [&printer] { printer.server()->sendJsonMessage(json(R"({"from":"host"})")); });
    peer.send(startFile(QStringLiteral("a.txt"), 1));
    peer.sendChunk("a");
    peer.send(QByteArrayLiteral(R"({"cmd":"CANCEL_FILE"})"));
    peer.send(QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":"p"})"));
    QVERIFY(peer.waitForReplies(6));
    QCOMPARE(printer.host().count(signal), 1);
    // The replies after the relayed signal go out all the same.
    QCOMPARE(peer.take().value(QStringLiteral("offset")), QJsonValue(QStringLiteral("0")));
    QCOMPARE(peer.take(), startData(1, 1));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(peer.take(), json(R"({"cmd":"CANCEL_FILE","errorcode":0})"));
    QCOMPARE(peer.take(), printStart(QStringLiteral("CHECKING"), QStringLiteral("p")));
    QCOMPARE(peer.take(), printStart(QStringLiteral("STARTED"), QStringLiteral("p")));
    QVERIFY(peer.expectNothing());
}

void TestRouting::dropsATextThatNoConnectionSent()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVERIFY(printer.waitForConnections(1));
    printer.server()->processTextMessage(QString::fromLatin1(versionCheck));
    QMetaObject::invokeMethod(printer.server(), "processTextMessage",
                              Q_ARG(QString, QString::fromLatin1(versionCheck)));
    QCOMPARE(printer.host().calls(), QStringList());
    QVERIFY(peer.expectNothing());
}

void TestRouting::writesDataThatNoConnectionSentWithoutAReply()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("a.txt"), 4));
    peer.take();
    printer.server()->processBinaryMessage(qCompress("ab"));
    QVERIFY(peer.expectNothing());
    peer.sendChunk("cd");
    QCOMPARE(peer.take(), startData(4, 4));
    QCOMPARE(peer.take(), checkData(1));
    QCOMPARE(readFile(printer.path(QStringLiteral("a.txt"))), QByteArrayLiteral("abcd"));
}

void TestRouting::ignoresADisconnectThatNoConnectionHad()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("a.txt"), 4));
    peer.take();
    printer.server()->socketDisconnected();
    printer.server()->binaryFrameReceived(qCompress("ab"), true);
    QCOMPARE(printer.host().count(QStringLiteral("fileTranDisconnet")), 0);
    QCOMPARE(printer.lastStatus(), 2);
    QVERIFY(peer.expectNothing());
}

void TestRouting::answersNothingToDataWhileNobodyReceives()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.sendChunk("ab");
    peer.sendBinary({});
    peer.sendBinary("cmd");
    QVERIFY(peer.expectNothing());
    QCOMPARE(entriesOf(printer.dir()), QStringList());
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sifGetVersionCheck()")});
}

void TestRouting::convertsTextsLikeTheWire()
{
    const ZySslEchoServer server(0, {}, {}, {}, nullptr);
    QCOMPARE(server.messageToJson(QStringLiteral(R"( {"a" : "\u00e4"} )")),
             QJsonObject({{QStringLiteral("a"), QStringLiteral("\u00e4")}}));
    for (const char *text : {"[1,2]", R"("x")", "", R"({"cmd":"START_FI)"})
        QCOMPARE(server.messageToJson(QString::fromLatin1(text)), QJsonObject());
    QCOMPARE(server.JsonToString(json(R"( { "b" : 1, "a" : true } )")),
             QStringLiteral(R"({"a":true,"b":1})"));
}

ZY_TEST(TestRouting)
#include "tst_routing.moc"
