// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// START_PRINT, PRINT_PAUSE and PRINT_STOP.

#include "memberaccess.h"
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

const QString jobName = QStringLiteral("job.zydlp");
const char startJob[] = R"({"cmd":"START_PRINT","filename":"job.zydlp","token":"secret"})";

int printState(const TestPrinter &printer)
{
    return valueOf(PrintState(), *printer.handles().first());
}

} // namespace

class TestPrintCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAndReportsTheCheck_data();
    void startsAndReportsTheCheck();
    void asksTheHostForPermissionThenForTheCheck();
    void sendsCheckingBeforeTheHostChecks();
    void checksInTheReceiveDirectory();
    void checksWithoutAHost();
    void startsAgainAfterACheck();
    void readsTheRequestAsTexts_data();
    void readsTheRequestAsTexts();
    void pausesAndStops_data();
    void pausesAndStops();
    void leavesAPrintStateWhateverTheOutcome_data();
    void leavesAPrintStateWhateverTheOutcome();

    void refusesToStart_data();
    void refusesToStart();
    void refusesWhileTheSameConnectionReceives();
    void refusesWhileAnotherConnectionReceives();
    void refusesWhileAnotherConnectionChecks();
    void refusesARepeatedStartDuringItsOwnCheck();
    void repeatsCheckingForAHandleOutsideTheRegistry();
    void pausesAndStopsDuringACheck();
};

void TestPrintCommands::startsAndReportsTheCheck_data()
{
    QTest::addColumn<std::optional<int>>("answer");
    QTest::addColumn<QString>("status");
    const auto row = [](const char *name, std::optional<int> answer, const char *status) {
        QTest::newRow(name) << answer << QString::fromLatin1(status);
    };
    row("1", 1, "STARTED");
    row("2", 2, "BUSY");
    row("0", 0, "CHECK_FALSE");
    row("3", 3, "CHECK_FALSE");
    row("-1", -1, "CHECK_FALSE");
    row("no answer", std::nullopt, "CHECK_FALSE");
}

void TestPrintCommands::startsAndReportsTheCheck()
{
    QFETCH(std::optional<int>, answer);
    QFETCH(QString, status);
    TestPrinter printer;
    printer.host().answers.checkFile = answer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(startJob), printStart(QStringLiteral("CHECKING"), jobName));
    QCOMPARE(peer.take(), printStart(status, jobName));
    QVERIFY(peer.expectNothing());
    // Even a failed check leaves the state STARTED.
    QCOMPARE(printState(printer), 4);
    QCOMPARE(printer.lastStatus(), 0);
}

void TestPrintCommands::asksTheHostForPermissionThenForTheCheck()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(QByteArray(startJob));
    QVERIFY(peer.waitForReplies(2));
    QCOMPARE(printer.host().calls(),
             QStringList({QStringLiteral("getFilePrintState(0, secret, true)"),
                          QStringLiteral("checkFile(job.zydlp, 0)")}));
}

void TestPrintCommands::sendsCheckingBeforeTheHostChecks()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    bool cameInTime = false;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        cameInTime = peer.waitForReplies(1);
        cameInTime = cameInTime && printState(printer) == 2 && printer.lastStatus() == 3;
    });
    peer.send(QByteArray(startJob));
    QVERIFY(peer.waitForReplies(2));
    QVERIFY(cameInTime);
}

void TestPrintCommands::checksInTheReceiveDirectory()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QDir::setCurrent(QDir::rootPath());
    QString current;
    printer.host().during(QStringLiteral("checkFile"), [&] { current = QDir::currentPath(); });
    peer.send(QByteArray(startJob));
    QVERIFY(peer.waitForReplies(2));
    QCOMPARE(current, QDir(printer.dir()).canonicalPath());
}

void TestPrintCommands::checksWithoutAHost()
{
    const QTemporaryDir dir;
    ZySslEchoServer server(0, {}, {}, dir.path(), nullptr);
    // Somebody allows the print, and nobody checks the file.
    connect(&server, &ZySslEchoServer::getFilePrintState, &server,
            [](int &state, const QString &, bool) { state = 1; });
    RawPeer peer(server.serverPort());
    QCOMPARE(peer.ask(startJob), printStart(QStringLiteral("CHECKING"), jobName));
    QCOMPARE(peer.take(), printStart(QStringLiteral("CHECK_FALSE"), jobName));
    QDir::setCurrent(QDir::tempPath());
}

void TestPrintCommands::startsAgainAfterACheck()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    for (const char *name : {"first", "second"}) {
        const QString fileName = QString::fromLatin1(name);
        peer.send({{QStringLiteral("cmd"), QStringLiteral("START_PRINT")},
                   {QStringLiteral("filename"), fileName}});
        QCOMPARE(peer.take(), printStart(QStringLiteral("CHECKING"), fileName));
        QCOMPARE(peer.take(), printStart(QStringLiteral("STARTED"), fileName));
    }
}

void TestPrintCommands::readsTheRequestAsTexts_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::newRow("filename is a number")
        << QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":5,"token":7})");
    QTest::newRow("filename is null")
        << QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":null,"token":null})");
    QTest::newRow("filename is an object")
        << QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":{"a":"b"},"token":["secret"]})");
    QTest::newRow("nothing but cmd") << QByteArrayLiteral(R"({"cmd":"START_PRINT"})");
}

void TestPrintCommands::readsTheRequestAsTexts()
{
    QFETCH(QByteArray, request);
    TestPrinter printer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(request), printStart(QStringLiteral("CHECKING"), QStringLiteral("")));
    QCOMPARE(peer.take(), printStart(QStringLiteral("STARTED"), QStringLiteral("")));
    QCOMPARE(printer.host().calls(),
             QStringList({QStringLiteral("getFilePrintState(0, , true)"),
                          QStringLiteral("checkFile(, 0)")}));
}

void TestPrintCommands::pausesAndStops_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<std::optional<int>>("answer");
    QTest::addColumn<QJsonObject>("reply");
    QTest::addColumn<QString>("call");
    for (const char *command : {"PRINT_PAUSE", "PRINT_STOP"}) {
        const auto row = [command](const char *name, std::optional<int> answer, const char *word) {
            QTest::addRow("%s, %s", command, name)
                << QByteArray("{\"cmd\":\"") + command + R"(","filename":"f","token":"secret"})"
                << answer
                << QJsonObject({{QStringLiteral("cmd"), QString::fromLatin1(command)},
                                {QStringLiteral("status"), QString::fromLatin1(word)}})
                << (qstrcmp(command, "PRINT_PAUSE") == 0
                        ? QStringLiteral("sigDoPrintPause(0, secret)")
                        : QStringLiteral("sigDoPrintStop(0, secret)"));
        };
        row("1", 1, "CMD_SUCCES");
        row("-1", -1, "TOKEN_ERROR");
        row("0", 0, "CMD_FAIL");
        row("2", 2, "CMD_FAIL");
        row("no answer", std::nullopt, "CMD_FAIL");
    }
}

void TestPrintCommands::pausesAndStops()
{
    QFETCH(QByteArray, request);
    QFETCH(std::optional<int>, answer);
    TestPrinter printer;
    printer.host().answers.sigDoPrintPause = answer;
    printer.host().answers.sigDoPrintStop = answer;
    RawPeer peer(printer.port());
    QTEST(peer.ask(request), "reply");
    QTEST(printer.host().calls().join(QLatin1Char(';')), "call");
    QVERIFY(peer.expectNothing());
}

void TestPrintCommands::leavesAPrintStateWhateverTheOutcome_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("done") << 1;
    QTest::newRow("failed") << 0;
    QTest::newRow("token rejected") << -1;
}

void TestPrintCommands::leavesAPrintStateWhateverTheOutcome()
{
    QFETCH(int, answer);
    TestPrinter printer;
    printer.host().answers.sigDoPrintPause = answer;
    printer.host().answers.sigDoPrintStop = answer;
    RawPeer peer(printer.port());
    peer.ask(R"({"cmd":"PRINT_PAUSE"})");
    QCOMPARE(printState(printer), 4);
    peer.ask(R"({"cmd":"PRINT_STOP"})");
    QCOMPARE(printState(printer), 0);
    peer.ask(R"({"cmd":"PRINT_PAUSE"})");
    QCOMPARE(printState(printer), 4);
    peer.ask(R"({"cmd":"PRINT_PAUSE"})");
    QCOMPARE(printState(printer), 4);
}

void TestPrintCommands::refusesToStart_data()
{
    QTest::addColumn<std::optional<int>>("answer");
    QTest::addColumn<QString>("status");
    QTest::newRow("token rejected")
        << std::optional<int>(-1) << QStringLiteral("PRINT_TOKEN_ERROR");
    QTest::newRow("refused") << std::optional<int>(0) << QStringLiteral("BUSY");
    QTest::newRow("neither yes nor no") << std::optional<int>(2) << QStringLiteral("BUSY");
    QTest::newRow("no answer") << std::optional<int>() << QStringLiteral("BUSY");
}

void TestPrintCommands::refusesToStart()
{
    QFETCH(std::optional<int>, answer);
    QFETCH(QString, status);
    TestPrinter printer;
    printer.host().answers.getFilePrintState = answer;
    RawPeer peer(printer.port());
    QCOMPARE(peer.ask(startJob), printStart(status, jobName));
    QVERIFY(peer.expectNothing());
    QCOMPARE(printer.host().count(QStringLiteral("checkFile")), 0);
    QCOMPARE(printState(printer), 0);
}

void TestPrintCommands::refusesWhileTheSameConnectionReceives()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    peer.send(startFile(QStringLiteral("a.txt"), 10));
    peer.take();
    printer.host().takeCalls();
    QCOMPARE(peer.ask(startJob), printStart(QStringLiteral("BUSY"), jobName));
    QCOMPARE(printer.host().takeCalls(), QStringList());
    QVERIFY(peer.expectNothing());
    // The reception goes on under its own name.
    peer.sendChunk("0123456789");
    QCOMPARE(peer.take(), startData(10, 10));
    QVERIFY(QFile::exists(printer.path(QStringLiteral("a.txt"))));
}

void TestPrintCommands::refusesWhileAnotherConnectionReceives()
{
    TestPrinter printer;
    RawPeer receiving(printer.port());
    RawPeer printing(printer.port());
    receiving.send(startFile(QStringLiteral("a.txt"), 10));
    receiving.take();
    QCOMPARE(printing.ask(startJob), printStart(QStringLiteral("BUSY"), jobName));
    QVERIFY(printing.expectNothing());
}

void TestPrintCommands::refusesWhileAnotherConnectionChecks()
{
    TestPrinter printer;
    RawPeer first(printer.port());
    RawPeer second(printer.port());
    QJsonObject during;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        during = second.ask(R"({"cmd":"START_PRINT","filename":"other"})");
    });
    first.send(QByteArray(startJob));
    QVERIFY(first.waitForReplies(2));
    QCOMPARE(during, printStart(QStringLiteral("BUSY"), QStringLiteral("other")));
    QCOMPARE(first.take(), printStart(QStringLiteral("CHECKING"), jobName));
    QCOMPARE(first.take(), printStart(QStringLiteral("STARTED"), jobName));
    QVERIFY(second.expectNothing());
}

void TestPrintCommands::refusesARepeatedStartDuringItsOwnCheck()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    printer.host().during(QStringLiteral("checkFile"), [&] {
        // "CHECKING" has come; the repeated command may also be held back until the check is over.
        peer.send(QByteArrayLiteral(R"({"cmd":"START_PRINT","filename":"again"})"));
        printer.host().during(QStringLiteral("checkFile"), {});
        peer.waitForReplies(2);
    });
    peer.send(QByteArray(startJob));
    QVERIFY(peer.waitForReplies(3));
    QCOMPARE(peer.take(), printStart(QStringLiteral("CHECKING"), jobName));
    QCOMPARE(peer.take(), printStart(QStringLiteral("BUSY"), QStringLiteral("again")));
    QCOMPARE(peer.take(), printStart(QStringLiteral("STARTED"), jobName));
}

void TestPrintCommands::repeatsCheckingForAHandleOutsideTheRegistry()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    ZyFileTransHandle stray(printer.server(), nullptr);
    connect(&stray, &ZyFileTransHandle::checkFile, &stray, [&](const QString &, int &checkState) {
        stray.startPrint(json(R"({"filename":"again"})"));
        checkState = 1;
    });
    // Replies go to the connection that is being served, whichever handle sends them.
    printer.host().during(QStringLiteral("sifGetVersionCheck"),
                          [&] { stray.startPrint(json(R"({"filename":"first"})")); });
    peer.send(QByteArrayLiteral(R"({"cmd":"VERSION_CHECK"})"));
    QVERIFY(peer.waitForReplies(4));
    QCOMPARE(peer.take(), printStart(QStringLiteral("CHECKING"), QStringLiteral("first")));
    QCOMPARE(peer.take(), printStart(QStringLiteral("CHECKING"), QStringLiteral("first")));
    QCOMPARE(peer.take(), printStart(QStringLiteral("STARTED"), QStringLiteral("first")));
    QCOMPARE(peer.take(), json(R"({"version":"1"})"));
}

void TestPrintCommands::pausesAndStopsDuringACheck()
{
    TestPrinter printer;
    RawPeer peer(printer.port());
    QVector<int> states;
    printer.host().during(QStringLiteral("checkFile"), [&] {
        QVERIFY(peer.waitForReplies(1));
        peer.take();
        for (const char *command : {"PRINT_STOP", "PRINT_PAUSE"}) {
            peer.ask(QByteArray("{\"cmd\":\"") + command + "\"}");
            states.append(printState(printer));
        }
    });
    peer.send(QByteArray(startJob));
    QVERIFY(waitUntil([&] { return states.size() == 2 && !peer.texts().isEmpty(); }));
    QCOMPARE(states, QVector<int>({0, 4}));
    QCOMPARE(peer.take(), printStart(QStringLiteral("STARTED"), jobName));
    QCOMPARE(printState(printer), 4);
}

ZY_TEST(TestPrintCommands)
#include "tst_printcommands.moc"
