// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The questions put to the host, the codes its answers mean, and the busy scan.

#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"
#include "wirejson.h"

#include <QTest>

#include <limits>
#include <optional>

using namespace zytest;

using Question = int (*)(ZySslEchoServer &);
Q_DECLARE_METATYPE(Question)
Q_DECLARE_METATYPE(std::optional<int>)

namespace
{

const QString token = QStringLiteral("secret");

int askFile(ZySslEchoServer &server)
{
    return server.getFileTransStatus(token, false);
}

int askPrint(ZySslEchoServer &server)
{
    return server.getFilePrintStatus(token, true);
}

int askPause(ZySslEchoServer &server)
{
    return server.getPrintPauseStatus(token);
}

int askStop(ZySslEchoServer &server)
{
    return server.getPrintStopStatus(token);
}

/// Answers every question of the host with @p answer.
void answerAll(RecordingHost &host, std::optional<int> answer)
{
    host.answers.getPrintState = answer;
    host.answers.getFilePrintState = answer;
    host.answers.sigDoPrintPause = answer;
    host.answers.sigDoPrintStop = answer;
}

} // namespace

class TestHostBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turnsAnswersIntoCodes_data();
    void turnsAnswersIntoCodes();
    void passesTokenAndNeedOn();
    void fetchesTheStatusRecord();
    void overwritesTheCallersStatusRecord();
    void handsTheHostACopyOfTheParameters();
    void fetchesTheVersion();
    void relaysFinishWithTheSameReference();

    void takesTheInitialValueWithoutAHost_data();
    void takesTheInitialValueWithoutAHost();
    void takesTheInitialValuesOfRecordsWithoutAHost();
    void takesTheInitialValueWhenTheConnectionIsQueued();
    void answersReceivingWithoutAsking();
    void answersCheckingWithoutAsking();
    void letsListOrderDecide_data();
    void letsListOrderDecide();
    void reportsReceivingBeforeChecking();
};

void TestHostBridge::turnsAnswersIntoCodes_data()
{
    QTest::addColumn<Question>("question");
    QTest::addColumn<std::optional<int>>("answer");
    QTest::addColumn<int>("code");
    struct Kind {
        const char *name;
        Question question;
        int yes;
        int no;
    };
    for (const Kind &kind : {Kind{"file", askFile, 0, 5}, Kind{"print", askPrint, 0, 5},
                             Kind{"pause", askPause, 7, 8}, Kind{"stop", askStop, 7, 8}}) {
        const auto row = [&kind](std::optional<int> answer, int code) {
            const QByteArray text = answer ? QByteArray::number(*answer) : "nothing";
            QTest::addRow("%s, host says %s", kind.name, text.constData())
                << kind.question << answer << code;
        };
        row(1, kind.yes);
        row(-1, 6);
        for (const int answer :
             {0, 2, 3, 6, 7, -2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
            row(answer, kind.no);
        row(std::nullopt, kind.no);
    }
}

void TestHostBridge::turnsAnswersIntoCodes()
{
    QFETCH(Question, question);
    QFETCH(std::optional<int>, answer);
    TestPrinter printer;
    answerAll(printer.host(), answer);
    QTEST(question(*printer.server()), "code");
    QCOMPARE(printer.host().calls().size(), 1);
}

void TestHostBridge::passesTokenAndNeedOn()
{
    TestPrinter printer;
    ZySslEchoServer &server = *printer.server();
    server.getFileTransStatus(token, true);
    server.getFileTransStatus({}, false);
    server.getFilePrintStatus(token, true);
    server.getFilePrintStatus(token, false);
    server.getPrintPauseStatus(token);
    server.getPrintStopStatus(token);
    QCOMPARE(printer.host().calls(),
             QStringList({QStringLiteral("getPrintState(0, secret, true)"),
                          QStringLiteral("getPrintState(0, , false)"),
                          QStringLiteral("getFilePrintState(0, secret, true)"),
                          QStringLiteral("getFilePrintState(0, secret, false)"),
                          QStringLiteral("sigDoPrintPause(0, secret)"),
                          QStringLiteral("sigDoPrintStop(0, secret)")}));
}

void TestHostBridge::fetchesTheStatusRecord()
{
    TestPrinter printer;
    PrintStatusPara answer;
    answer.filename = QStringLiteral("a.zydlp");
    answer.resin = QStringLiteral("grey");
    answer.printStatus = 1;
    printer.host().answers.status = answer;
    PrintStatusPara record;
    printer.server()->getPrinterStatus(record, token);
    QCOMPARE(recordText(record), QStringLiteral("a.zydlp|||||||||||grey|1"));
    QCOMPARE(printer.host().calls(),
             QStringList{QStringLiteral("sigGetPrinterStatus(||||||||||||0, secret)")});
}

void TestHostBridge::overwritesTheCallersStatusRecord()
{
    TestPrinter printer;
    PrintStatusPara record;
    record.curSliceLayer = QStringLiteral("left over");
    record.printStatus = 5;
    printer.server()->getPrinterStatus(record, token);
    QCOMPARE(recordText(record), QStringLiteral("||||||||||||0"));
    QVERIFY(!record.curSliceLayer.isNull());
    // The host was shown a fresh record, never the caller's.
    QCOMPARE(recordText(printer.host().lastRecord()), QStringLiteral("||||||||||||0"));
}

void TestHostBridge::handsTheHostACopyOfTheParameters()
{
    TestPrinter printer;
    PrintStatusPara written;
    written.eleSpeed = QStringLiteral("written by the host");
    written.printStatus = 8;
    printer.host().answers.parameters = written;
    PrintStatusPara record;
    record.eleSpeed = QStringLiteral("120");
    record.layerThickness = QStringLiteral("0.05");
    record.printStatus = 3;
    printer.server()->setPrintPara(record, token);
    QCOMPARE(recordText(printer.host().lastRecord()), QStringLiteral("||||||||120||0.05||3"));
    QCOMPARE(recordText(record), QStringLiteral("||||||||120||0.05||3"));
}

void TestHostBridge::fetchesTheVersion()
{
    TestPrinter printer;
    printer.host().answers.version = QStringLiteral("2.0 beta");
    QCOMPARE(printer.server()->getVersionCheck(), QStringLiteral("2.0 beta"));
    QCOMPARE(printer.host().calls(), QStringList{QStringLiteral("sifGetVersionCheck()")});
}

void TestHostBridge::relaysFinishWithTheSameReference()
{
    TestPrinter printer;
    printer.host().answers.finish = 42;
    int checkState = 7;
    printer.server()->onFinish(QStringLiteral("a.zydlp"), checkState);
    QCOMPARE(checkState, 42);
    printer.host().answers.finish.reset();
    printer.server()->onFinish(QStringLiteral("b.zydlp"), checkState);
    QCOMPARE(checkState, 42);
    QCOMPARE(
        printer.host().calls(),
        QStringList({QStringLiteral("finish(a.zydlp, 7)"), QStringLiteral("finish(b.zydlp, 42)")}));
}

void TestHostBridge::takesTheInitialValueWithoutAHost_data()
{
    QTest::addColumn<Question>("question");
    QTest::addColumn<int>("code");
    QTest::newRow("file") << Question(askFile) << 5;
    QTest::newRow("print") << Question(askPrint) << 5;
    QTest::newRow("pause") << Question(askPause) << 8;
    QTest::newRow("stop") << Question(askStop) << 8;
}

void TestHostBridge::takesTheInitialValueWithoutAHost()
{
    QFETCH(Question, question);
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    QTEST(question(server), "code");
}

void TestHostBridge::takesTheInitialValuesOfRecordsWithoutAHost()
{
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    QCOMPARE(server.getVersionCheck(), QString());
    PrintStatusPara record;
    record.printStatus = 5;
    server.getPrinterStatus(record, token);
    QCOMPARE(recordText(record), QStringLiteral("||||||||||||0"));
    server.setPrintPara(record, token);
    int checkState = 5;
    server.onFinish({}, checkState);
    QCOMPARE(checkState, 5);
}

void TestHostBridge::takesTheInitialValueWhenTheConnectionIsQueued()
{
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    connect(
        &server, &ZySslEchoServer::sifGetVersionCheck, &server,
        [](QString &version) { version = QStringLiteral("late"); }, Qt::QueuedConnection);
    connect(
        &server, &ZySslEchoServer::getPrintState, &server,
        [](int &state, const QString &, bool) { state = 1; }, Qt::QueuedConnection);
    QCOMPARE(server.getVersionCheck(), QString());
    QCOMPARE(askFile(server), 5);
}

void TestHostBridge::answersReceivingWithoutAsking()
{
    TestPrinter printer;
    RawPeer idle(printer.port());
    RawPeer receiving(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 10));
    receiving.take();
    printer.host().takeCalls();
    QCOMPARE(askFile(*printer.server()), 3);
    QCOMPARE(askPrint(*printer.server()), 3);
    QCOMPARE(printer.host().takeCalls(), QStringList());
    // Pause and stop do not care.
    QCOMPARE(askPause(*printer.server()), 7);
    QCOMPARE(askStop(*printer.server()), 7);
}

void TestHostBridge::answersCheckingWithoutAsking()
{
    TestPrinter printer;
    RawPeer idle(printer.port());
    RawPeer printing(printer.port());
    QVector<int> codes;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        codes = {printer.lastStatus(), askFile(*printer.server()), askPrint(*printer.server())};
    });
    printing.send(QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":"p"})"));
    QVERIFY(printing.waitForReplies(2));
    QCOMPARE(codes, QVector<int>({3, 4, 4}));
    QCOMPARE(printer.host().calls(),
             QStringList({QStringLiteral("getFilePrintState(0, , true)"),
                          QStringLiteral("checkFile(p, 0)")}));
    // The check is over.
    QCOMPARE(askFile(*printer.server()), 0);
    QCOMPARE(askPrint(*printer.server()), 0);
}

void TestHostBridge::letsListOrderDecide_data()
{
    QTest::addColumn<bool>("isCheckingFirst");
    QTest::addColumn<int>("code");
    QTest::newRow("checking, then receiving") << true << 4;
    QTest::newRow("receiving, then checking") << false << 3;
}

void TestHostBridge::letsListOrderDecide()
{
    QFETCH(bool, isCheckingFirst);
    QFETCH(int, code);
    TestPrinter printer;
    RawPeer first(printer.port());
    QVERIFY(printer.waitForConnections(1));
    RawPeer second(printer.port());
    RawPeer &printing = isCheckingFirst ? first : second;
    RawPeer &receiving = isCheckingFirst ? second : first;
    // The transfer begins while the host still thinks about the print.
    printer.host().during(QStringLiteral("getFilePrintState"), [&] {
        receiving.send(startFile(QStringLiteral("a.txt"), 10));
        receiving.waitForReplies(1);
    });
    QVector<int> codes;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        codes = {askFile(*printer.server()), askPrint(*printer.server())};
    });
    printing.send(QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":"p"})"));
    QVERIFY(printing.waitForReplies(2));
    QCOMPARE(codes, QVector<int>({code, code}));
}

void TestHostBridge::reportsReceivingBeforeChecking()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    printer.host().during(QStringLiteral("getFilePrintState"), [&] {
        peer.send(startFile(QStringLiteral("a.txt"), 10));
        peer.waitForReplies(1);
    });
    QVector<int> codes;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        codes = {printer.lastStatus(), askFile(*printer.server())};
    });
    peer.send(QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":"p"})"));
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(codes, QVector<int>({2, 3}));
}

ZY_TEST(TestHostBridge)
#include "tst_hostbridge.moc"
