// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// GET_PRINT_STATUS, PRINT_PARA_SET and VERSION_CHECK.

#include "memberaccess.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

#include <limits>

using namespace zytest;

namespace
{

/// A status reply whose texts are all empty.
QJsonObject emptyStatus(const QString &printStatus)
{
    QJsonObject reply = json(R"({"cmd":"GET_PRINT_STATUS","filename":"","sliceLayerCount":"",
        "curSliceLayer":"","printRemainTime":"","initExposure":"","delayLight":"",
        "printExposure":"","printHeight":"","eleSpeed":"","bottomExposureNum":"",
        "layerThickness":"","resin":""})");
    reply.insert(QStringLiteral("printStatus"), printStatus);
    return reply;
}

const char getStatus[] = R"({"cmd":"GET_PRINT_STATUS","token":"secret"})";

} // namespace

class TestStatusCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportsEveryText();
    void reportsThePrinterStateAsAWord_data();
    void reportsThePrinterStateAsAWord();
    void asksForTheStatusWithTheToken_data();
    void asksForTheStatusWithTheToken();
    void handsOverSixParameters();
    void acknowledgesParametersWithAnEmptyStatus_data();
    void acknowledgesParametersWithAnEmptyStatus();
    void reportsTheVersionWithoutACommandWord_data();
    void reportsTheVersionWithoutACommandWord();

    void reportsADefaultRecordWithoutAHost();
    void readsParametersThatAreNoTextsAsEmpty_data();
    void readsParametersThatAreNoTextsAsEmpty();
    void answersWhileAnotherConnectionReceives();
    void leavesThePrintStateAlone();
};

void TestStatusCommands::reportsEveryText()
{
    TestPrinter printer;
    PrintStatusPara status;
    status.filename = QStringLiteral("a.zydlp");
    status.sliceLayerCount = QStringLiteral("120");
    status.curSliceLayer = QStringLiteral("7");
    status.printRemainTime = QStringLiteral("3600");
    status.initExposure = QStringLiteral("8.5");
    status.delayLight = QStringLiteral("1");
    status.printExposure = QStringLiteral("2,5");
    status.printHeight = QStringLiteral("-0");
    status.eleSpeed = QStringLiteral("fast");
    status.bottomExposureNum = QStringLiteral(" 6 ");
    status.layerThickness = QStringLiteral("50 \u00b5m");
    status.resin = QStringLiteral("\"grey\"");
    status.printStatus = 1;
    printer.host().answers.status = status;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(getStatus),
             json(R"({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_PROCESSING",
                 "filename":"a.zydlp","sliceLayerCount":"120","curSliceLayer":"7",
                 "printRemainTime":"3600","initExposure":"8.5","delayLight":"1",
                 "printExposure":"2,5","printHeight":"-0","eleSpeed":"fast",
                 "bottomExposureNum":" 6 ","layerThickness":"50 µm","resin":"\"grey\""})"));
    QVERIFY(peer.expectNothing());
}

void TestStatusCommands::reportsThePrinterStateAsAWord_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("word");
    const QStringList words{
        QStringLiteral("PRINT_GENERAL"),  QStringLiteral("PRINT_PROCESSING"),
        QStringLiteral("PRINT_COMPLETE"), QStringLiteral("PRINT_FAIL"),
        QStringLiteral("PRINT_END"),      QStringLiteral("PRINT_STOP"),
        QStringLiteral("PRINT_STOPING"),  QStringLiteral("PRINT_COMPLETING"),
        QStringLiteral("TOKEN_ERROR"),
    };
    for (int code = 0; code < words.size(); ++code)
        QTest::addRow("%d", code) << code << words.at(code);
    for (const int code : {-1, 9, std::numeric_limits<int>::max()})
        QTest::addRow("%d", code) << code << QStringLiteral("");
}

void TestStatusCommands::reportsThePrinterStateAsAWord()
{
    QFETCH(int, code);
    QFETCH(QString, word);
    TestPrinter printer;
    PrintStatusPara status;
    status.printStatus = code;
    printer.host().answers.status = status;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(getStatus), emptyStatus(word));
}

void TestStatusCommands::asksForTheStatusWithTheToken_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QString>("call");
    const auto row = [](const char *name, const char *request, const char *token) {
        QTest::newRow(name)
            << QByteArray(request)
            << QStringLiteral("sigGetPrinterStatus(||||||||||||0, %1)").arg(QLatin1String(token));
    };
    row("with a token", getStatus, "secret");
    row("without", R"({"cmd":"GET_PRINT_STATUS"})", "");
    row("a number", R"({"cmd":"GET_PRINT_STATUS","token":5})", "");
    row("other keys are not read", R"({"cmd":"GET_PRINT_STATUS","filename":"x","resin":"y"})", "");
}

void TestStatusCommands::asksForTheStatusWithTheToken()
{
    QFETCH(QByteArray, request);
    TestPrinter printer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(request), emptyStatus(QStringLiteral("PRINT_GENERAL")));
    QTEST(printer.host().calls().join(QLatin1Char(';')), "call");
}

void TestStatusCommands::handsOverSixParameters()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    const QJsonObject reply
        = peer.ask(R"({"cmd":"PRINT_PARA_SET","token":"secret","initExposure":"1","delayLight":"2",
            "printExposure":"3","printHeight":"4","eleSpeed":"5","bottomExposureNum":"6",
            "layerThickness":"7","resin":"8","filename":"9","sliceLayerCount":"10",
            "curSliceLayer":"11","printRemainTime":"12","printStatus":"PRINT_STOP"})");
    QCOMPARE(reply, json(R"({"cmd":"PRINT_PARA_SET","status":""})"));
    QCOMPARE(printer.host().calls(),
             QStringList{QStringLiteral("sigSetPrintPara(||||1|2|3|4|5|6|||0, secret)")});
    QVERIFY(!printer.host().lastRecord().resin.isNull());
}

void TestStatusCommands::acknowledgesParametersWithAnEmptyStatus_data()
{
    QTest::addColumn<int>("written");
    for (const int written : {-1, 0, 1, 6, 7, 8})
        QTest::addRow("host writes %d", written) << written;
}

void TestStatusCommands::acknowledgesParametersWithAnEmptyStatus()
{
    QFETCH(int, written);
    TestPrinter printer;
    PrintStatusPara record;
    record.printStatus = written;
    record.initExposure = QStringLiteral("written");
    printer.host().answers.parameters = record;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(R"({"cmd":"PRINT_PARA_SET","initExposure":"1"})"),
             json(R"({"cmd":"PRINT_PARA_SET","status":""})"));
    QVERIFY(peer.expectNothing());
}

void TestStatusCommands::reportsTheVersionWithoutACommandWord_data()
{
    QTest::addColumn<QString>("version");
    QTest::newRow("1") << QStringLiteral("1");
    QTest::newRow("a text") << QStringLiteral("2.1 \"beta\"");
    QTest::newRow("empty") << QStringLiteral("");
}

void TestStatusCommands::reportsTheVersionWithoutACommandWord()
{
    QFETCH(QString, version);
    TestPrinter printer;
    printer.host().answers.version = version;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(R"({"cmd":"VERSION_CHECK","token":5,"version":"9"})"),
             QJsonObject({{QStringLiteral("version"), version}}));
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sifGetVersionCheck()")});
}

void TestStatusCommands::reportsADefaultRecordWithoutAHost()
{
    const ZySslEchoServer server(0, {}, {}, {}, nullptr);
    RawPeer peer(server.serverPort());
    QCOMPARE(peer.ask(getStatus), emptyStatus(QStringLiteral("PRINT_GENERAL")));
    QCOMPARE(peer.ask(R"({"cmd":"VERSION_CHECK"})"), json(R"({"version":""})"));
    QCOMPARE(peer.ask(R"({"cmd":"PRINT_PARA_SET"})"),
             json(R"({"cmd":"PRINT_PARA_SET","status":""})"));
}

void TestStatusCommands::readsParametersThatAreNoTextsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const char *value : {"5", "1.5", "true", "null", "[\"5\"]", "{\"a\":\"5\"}"})
        QTest::newRow(value) << QByteArray(value);
}

void TestStatusCommands::readsParametersThatAreNoTextsAsEmpty()
{
    QFETCH(QByteArray, value);
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.ask(R"({"cmd":"PRINT_PARA_SET","eleSpeed":"7","initExposure":)" + value + '}');
    QCOMPARE(printer.host().calls(),
             QStringList{QStringLiteral("sigSetPrintPara(||||||||7||||0, )")});
}

void TestStatusCommands::answersWhileAnotherConnectionReceives()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    RawPeer other(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 10));
    receiving.take();
    QCOMPARE(other.ask(getStatus), emptyStatus(QStringLiteral("PRINT_GENERAL")));
    QCOMPARE(receiving.ask(getStatus), emptyStatus(QStringLiteral("PRINT_GENERAL")));
    QCOMPARE(other.ask(R"({"cmd":"VERSION_CHECK"})"), json(R"({"version":"1"})"));
}

void TestStatusCommands::leavesThePrintStateAlone()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.ask(R"({"cmd":"PRINT_PAUSE"})");
    peer.ask(getStatus);
    peer.ask(R"({"cmd":"PRINT_PARA_SET"})");
    peer.ask(R"({"cmd":"VERSION_CHECK"})");
    QCOMPARE(valueOf(PrintState(), *printer.handles().first()), 4);
}

ZY_TEST(TestStatusCommands)
#include "tst_statuscommands.moc"
