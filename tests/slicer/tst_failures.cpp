// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What can go wrong with a printer: each failure with its exit code and its one line.

#include "cuttingproxy.h"
#include "modelfiles.h"
#include "printerprocess.h"
#include "rawpeer.h"
#include "slicerprocess.h"
#include "testprinter.h"
#include "testprogram.h"
#include "texts.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

using zytest::CuttingProxy;
using zytest::RawPeer;
using zytest::TestPrinter;

namespace
{

QString urlOf(const TestPrinter &printer)
{
    return "ws://127.0.0.1:%1"_s.arg(printer.port());
}

QByteArray startFile(qint64 size)
{
    return "{\"cmd\":\"START_FILE\",\"filename\":\"x\",\"key\":\"1\",\"offset\":\"0\",\"size\":\""
        + QByteArray::number(size) + "\"}";
}

} // namespace

class TestFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void tellsThatNobodyListens();
    void tellsThatNobodyAnswersTheHandshake();
    void tellsThatSomethingElseAnswers();
    void tellsThatACommandIsNotAnswered();
    void tellsThatThePrinterIsReceiving();
    void tellsThatThePrinterIsChecking();
    void tellsThatThePrinterRefusesTheFile();
    void tellsThatThePrinterRejectsTheToken();
    void tellsThatThePrinterCannotCreateTheFile();
    void tellsThatThePrinterCannotStoreTheData();
    void tellsThatAPrintIsBusy();
    void tellsThatAPrintsTokenIsRejected();
    void tellsThatAPrintsCheckFailed();
    void tellsThatAPrintFailed();
    void doesNotPrintAfterABadCheck();
    void hintsAtANameThatBeginsWithADot();
    void tellsThatAPauseIsRefused();
    void givesUpAStalledTransfer();

private:
    QStringList send(const QString &url, const QStringList &more = {}) const
    {
        return QStringList{"send"_s, m_model, "--to"_s, url} + more;
    }

    QTemporaryDir m_directory;
    QString m_model;
};

void TestFailures::initTestCase()
{
    m_model = makeModel(m_directory.filePath("part.zydlp"_s));
}

void TestFailures::tellsThatNobodyListens()
{
    const QString url = deadUrl();
    EXPECT_FAILURE(runSlicer(send(url)), 3, "no connection (connection refused): " + url.toUtf8());
    EXPECT_FAILURE(runSlicer({"status"_s, "--to"_s, url}), 3,
                   "no connection (connection refused): ");
    EXPECT_FAILURE(runSlicer({"print"_s, "x"_s, "--to"_s, url, "--watch"_s}), 3, "no connection (");
    EXPECT_FAILURE(runSlicer({"set"_s, "eleSpeed=1"_s, "--to"_s, url}), 3, "no connection (");
}

void TestFailures::tellsThatNobodyAnswersTheHandshake()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    const QString url = "ws://127.0.0.1:%1"_s.arg(silent.serverPort());
    EXPECT_FAILURE(runSlicer(send(url, {"--connect-timeout"_s, "0.3"_s})), 3,
                   "no connection (timed out): ");
}

void TestFailures::tellsThatSomethingElseAnswers()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, this,
            [&] { server.nextPendingConnection()->write("220 ready\r\n\r\n"); });
    const QString url = "ws://127.0.0.1:%1"_s.arg(server.serverPort());
    EXPECT_FAILURE(runSlicer(send(url)), 3, "no connection (not a WebSocket server): ");
    EXPECT_FAILURE(runSlicer({"status"_s, "--to"_s, url}), 3,
                   "no connection (not a WebSocket server): ");
}

void TestFailures::tellsThatACommandIsNotAnswered()
{
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    // The connection opens, and ends within the answer.
    printer.host().during("sigGetPrinterStatus"_s, [&] { proxy.cut(CuttingProxy::Ending::Reset); });
    EXPECT_FAILURE(runSlicer({"status"_s, "--to"_s, proxy.url().toString()}), 3,
                   "status not answered (connection lost)");
    printer.host().during("sifGetVersionCheck"_s, [&] { proxy.freeze(); });
    EXPECT_FAILURE(
        runSlicer({"version"_s, "--to"_s, proxy.url().toString(), "--timeout"_s, "0.3"_s}), 3,
        "version not answered (no answer within 0.3 s)");
}

void TestFailures::tellsThatThePrinterIsReceiving()
{
    PrinterProcess printer;
    RawPeer other(quint16(printer.url().port()));
    QVERIFY(!other.ask(startFile(1000)).isEmpty());
    EXPECT_FAILURE(runSlicer(send(printer.url().toString())), 4, "busy, it is receiving");
}

void TestFailures::tellsThatThePrinterIsChecking()
{
    PrinterProcess printer({"--slow-check"_s, "3600"_s});
    const QString url = printer.url().toString();
    QCOMPARE(runSlicer(send(url)).exitCode, 0);
    SlicerProcess print({"print"_s, "part.zydlp"_s, "--to"_s, url, "--json"_s});
    QVERIFY(!print.waitForEvent("print-checking"_s).isEmpty());
    EXPECT_FAILURE(runSlicer(send(url)), 4, "busy, it is checking");
    EXPECT_FAILURE(runSlicer({"print"_s, "part.zydlp"_s, "--to"_s, url}), 4,
                   "receiving or checking a file: part.zydlp on " + url.toUtf8());
}

void TestFailures::tellsThatThePrinterRefusesTheFile()
{
    PrinterProcess printer({"--refuse"_s});
    EXPECT_FAILURE(runSlicer(send(printer.url().toString())), 5, "refused by the printer");
}

void TestFailures::tellsThatThePrinterRejectsTheToken()
{
    TestPrinter printer;
    printer.host().answers.getPrintState = -1;
    EXPECT_FAILURE(runSlicer(send(urlOf(printer))), 6, "token rejected");
}

void TestFailures::tellsThatThePrinterCannotCreateTheFile()
{
    TestPrinter printer;
    QVERIFY(QDir().mkdir(printer.temporaryFile()));
    EXPECT_FAILURE(runSlicer(send(urlOf(printer))), 5, "cannot store the file");
}

void TestFailures::tellsThatThePrinterCannotStoreTheData()
{
    TestPrinter printer;
    // Once the transfer is accepted a directory takes the place of the reception file.
    printer.host().during("fileTranStart"_s, [&] {
        QTimer::singleShot(0, this, [&] {
            QFile::remove(printer.temporaryFile());
            QDir().mkdir(printer.temporaryFile());
        });
    });
    EXPECT_FAILURE(runSlicer(send(urlOf(printer))), 5, "cannot store the file");
}

void TestFailures::tellsThatAPrintIsBusy()
{
    TestPrinter printer;
    printer.host().answers.checkFile = 2;
    EXPECT_FAILURE(runSlicer({"print"_s, "x.zydlp"_s, "--to"_s, urlOf(printer)}), 4,
                   "receiving or checking a file: x.zydlp");
}

void TestFailures::tellsThatAPrintsTokenIsRejected()
{
    PrinterProcess printer({"--token"_s, "secret"_s});
    const QString url = printer.url().toString();
    EXPECT_FAILURE(runSlicer(send(url, {"--print"_s, "--token"_s, "wrong"_s})), 6,
                   "token rejected");
    EXPECT_FAILURE(runSlicer({"stop"_s, "--to"_s, url, "--token"_s, "wrong"_s}), 6,
                   "token rejected");
    EXPECT_FAILURE(runSlicer({"set"_s, "eleSpeed=1"_s, "--to"_s, url}), 6, "token rejected");
}

void TestFailures::tellsThatAPrintsCheckFailed()
{
    PrinterProcess printer;
    EXPECT_FAILURE(runSlicer({"print"_s, "none.zydlp"_s, "--to"_s, printer.url().toString()}), 8,
                   "check failed: none.zydlp");
}

void TestFailures::tellsThatAPrintFailed()
{
    PrinterProcess printer({"--fail-at"_s, "5"_s, "--speed"_s, "20000"_s});
    EXPECT_FAILURE(
        runSlicer(send(printer.url().toString(),
                       {"--print"_s, "--watch"_s, "--interval"_s, "0.05"_s, "--quiet"_s})),
        9, "print failed: part.zydlp");
}

void TestFailures::doesNotPrintAfterABadCheck()
{
    TestPrinter printer;
    printer.host().answers.finish = 2;
    EXPECT_FAILURE(runSlicer(send(urlOf(printer), {"--print"_s})), 8, "check failed: part.zydlp");
    QCOMPARE(printer.host().count("getFilePrintState"_s), 0);
    QVERIFY(QFile::exists(printer.path("part.zydlp"_s)));
}

void TestFailures::hintsAtANameThatBeginsWithADot()
{
    PrinterProcess printer;
    EXPECT_FAILURE(runSlicer(send(printer.url().toString(), {"--as"_s, ".part.zydlp"_s})), 8,
                   "may take no name that begins with a dot");
    TestPrinter other; // takes such names
    QCOMPARE(runSlicer(send(urlOf(other), {"--as"_s, ".part.zydlp"_s})).exitCode, 0);
}

void TestFailures::tellsThatAPauseIsRefused()
{
    PrinterProcess printer;
    EXPECT_FAILURE(runSlicer({"pause"_s, "--to"_s, printer.url().toString()}), 5, "pause refused");
}

void TestFailures::givesUpAStalledTransfer()
{
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    printer.host().during("fileTranStart"_s, [&] { proxy.freeze(); });
    const SlicerResult result
        = runSlicer(send(proxy.url().toString(),
                         {"--stall"_s, "0.3"_s, "--connect-timeout"_s, "0.3"_s, "--retries"_s,
                          "2"_s, "--back-off"_s, "0.05"_s, "--json"_s}));
    QCOMPARE(result.exitCode, 11);
    VERIFY_TEXT(
        isOneErrorLine(result.errors, "given up after 3 attempts (no connection): part.zydlp"),
        result.errors);
    const QVector<QJsonObject> retries = eventsNamed("retrying"_s, result.output);
    QCOMPARE(retries.size(), 2);
    QCOMPARE(retries[0].value("reason"_s).toString(), "no acknowledgement for 0.3 s"_s);
    QCOMPARE(retries[1].value("delayMs"_s).toInt(), 100);
}

ZY_TEST(TestFailures)

#include "tst_failures.moc"
