// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Commands and their connection, with a real server and through a proxy that mistreats them.

#include "cuttingproxy.h"
#include "exchange.h"
#include "testprinter.h"
#include "testprogram.h"
#include "waiting.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <memory>
#include <optional>

using zysession::Exchange;
using zysession::Parameters;
using zysession::PrinterLink;
using zysession::PrinterStatus;
using zysession::TimeLimits;
using zytest::CuttingProxy;
using zytest::TestPrinter;
using zytest::waitUntil;
using Ending = Exchange::Ending;
using Fault = PrinterLink::Fault;

namespace
{

using Ask = std::function<void(Exchange &)>;

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

QUrl urlOf(quint16 port, const char *scheme = "ws")
{
    return QUrl(s("%1://127.0.0.1:%2").arg(s(scheme)).arg(port));
}

/// Whether the link is open, or why it is not.
std::optional<Fault> outcomeOfOpening(PrinterLink &link)
{
    bool hasEnded = false;
    const QObject context;
    QObject::connect(&link, &PrinterLink::opened, &context, [&] { hasEnded = true; });
    QObject::connect(&link, &PrinterLink::failed, &context, [&] { hasEnded = true; });
    link.open();
    if (hasEnded || !waitUntil([&] { return hasEnded; }))
        return {};
    return link.fault();
}

/// A connection to a printer behind a proxy, with one exchange on it.
struct Bench {
    explicit Bench(const TimeLimits &limits = {}) : link(proxy.url(), limits)
    {
        outcomeOfOpening(link);
        exchange = std::make_unique<Exchange>(link);
    }

    /// What came of it; ends that come twice are none.
    Exchange::Result resultOf(const Ask &ask)
    {
        QVector<Exchange::Result> results;
        const auto connection
            = QObject::connect(exchange.get(), &Exchange::ended,
                               [&](const Exchange::Result &result) { results.append(result); });
        ask(*exchange);
        waitUntil([&] { return !results.isEmpty(); });
        zytest::spinOnce();
        QObject::disconnect(connection);
        if (results.size() != 1)
            qFatal("%d results", int(results.size()));
        return results.first();
    }
    Ending endingOf(const Ask &ask) { return resultOf(ask).ending; }

    TestPrinter printer;
    CuttingProxy proxy{printer.port()};
    PrinterLink link;
    std::unique_ptr<Exchange> exchange;
};

PrintStatusPara record(const char *eleSpeed)
{
    PrintStatusPara para;
    para.initExposure = s("30");
    para.delayLight = s("1");
    para.printExposure = s("2.5");
    para.printHeight = s("5");
    para.eleSpeed = s(eleSpeed);
    para.bottomExposureNum = s("6");
    return para;
}

} // namespace

Q_DECLARE_METATYPE(zysession::Exchange::Ending)

class TestExchange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksForStatusAndVersion();
    void knowsWhatPauseAndStopAnswer_data();
    void knowsWhatPauseAndStopAnswer();
    void knowsWhatAPrintAnswers_data();
    void knowsWhatAPrintAnswers();
    void saysThatThePrinterChecksFirst();
    void setsSomeParametersAndKeepsTheOthers();
    void saysWhichParametersAreNotTaken();
    void sendsTheToken();
    void sharesALinkWithOtherExchanges();
    void opensAnewOnTheSameLink();

    // Rainy day.
    void saysThatNobodyAnswersInTime();
    void saysThatTheConnectionIsLost();
    void saysThatThereIsNoConnection();
    void endsAnAbandonedCommandNever();
    void saysWhyNoConnectionComesAbout_data();
    void saysWhyNoConnectionComesAbout();
    void saysThatTheHandshakeIsRefused_data();
    void saysThatTheHandshakeIsRefused();
    void noticesThatThePrinterIsGone();
    void staysSilentOnceClosed();
    void mayBeDeletedInItsOwnSlots();
};

void TestExchange::asksForStatusAndVersion()
{
    Bench bench;
    PrintStatusPara status = record("60");
    status.printStatus = 1;
    status.curSliceLayer = s("7");
    bench.printer.host().answers.status = status;
    const Exchange::Result result
        = bench.resultOf([](Exchange &exchange) { exchange.askStatus(); });
    QCOMPARE(result.ending, Ending::Done);
    const PrinterStatus read = PrinterStatus::fromReply(result.answer);
    QCOMPARE(read.state, PrinterStatus::State::Printing);
    QCOMPARE(read.layer, 7);
    const Exchange::Result version
        = bench.resultOf([](Exchange &exchange) { exchange.askVersion(); });
    QCOMPARE(version.ending, Ending::Done);
    QCOMPARE(Exchange::versionOf(version.answer), s("1"));
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.cancelFile(); }), Ending::Done);
}

void TestExchange::knowsWhatPauseAndStopAnswer_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<Ending>("ending");
    QTest::newRow("done") << 1 << Ending::Done;
    QTest::newRow("not now") << 0 << Ending::Refused;
    QTest::newRow("token") << -1 << Ending::TokenRejected;
}

void TestExchange::knowsWhatPauseAndStopAnswer()
{
    QFETCH(int, answer);
    QFETCH(Ending, ending);
    Bench bench;
    bench.printer.host().answers.sigDoPrintPause = answer;
    bench.printer.host().answers.sigDoPrintStop = answer;
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.pause(); }), ending);
    QCOMPARE(bench.printer.host().count(s("sigDoPrintPause")), 1);
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.stop(); }), ending);
    QCOMPARE(bench.printer.host().count(s("sigDoPrintStop")), 1);
}

void TestExchange::knowsWhatAPrintAnswers_data()
{
    QTest::addColumn<int>("mayPrint"); // getFilePrintState
    QTest::addColumn<int>("check"); // checkFile
    QTest::addColumn<Ending>("ending");
    QTest::newRow("started") << 1 << 1 << Ending::Done;
    QTest::newRow("busy") << 1 << 2 << Ending::Busy;
    QTest::newRow("check failed") << 1 << 0 << Ending::CheckFailed;
    QTest::newRow("token") << -1 << 1 << Ending::TokenRejected;
}

void TestExchange::knowsWhatAPrintAnswers()
{
    QFETCH(int, mayPrint);
    QFETCH(int, check);
    QFETCH(Ending, ending);
    Bench bench;
    bench.printer.host().answers.getFilePrintState = mayPrint;
    bench.printer.host().answers.checkFile = check;
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.print(s("x.zydlp")); }), ending);
}

void TestExchange::saysThatThePrinterChecksFirst()
{
    TimeLimits limits;
    limits.check = 100;
    Bench bench(limits);
    bool isChecking = false;
    QObject::connect(bench.exchange.get(), &Exchange::checking, [&] {
        isChecking = true;
        bench.proxy.freeze(); // the result does not get through any more
    });
    bench.printer.host().during(s("checkFile"), [&] { waitUntil([&] { return isChecking; }); });
    const Exchange::Result result
        = bench.resultOf([](Exchange &exchange) { exchange.print(s("x.zydlp")); });
    QVERIFY(isChecking);
    QCOMPARE(result.ending, Ending::NoAnswer);
    QCOMPARE(result.timeLimit, 100);
}

void TestExchange::setsSomeParametersAndKeepsTheOthers()
{
    Bench bench;
    bench.printer.host().answers.status = record("60.0");
    const Exchange::Result result = bench.resultOf([](Exchange &exchange) {
        exchange.set(Parameters{{s("eleSpeed"), s("60")}});
    });
    QCOMPARE(result.ending, Ending::Done);
    QCOMPARE(PrinterStatus::fromReply(result.answer).parameters.value(s("eleSpeed")), s("60.0"));
    // All six, the other five as they were.
    const QStringList calls = bench.printer.host().calls().filter(s("sigSetPrintPara("));
    QCOMPARE(calls, QStringList(s("sigSetPrintPara(||||30|1|2.5|5|60|6|||0, )")));
}

void TestExchange::saysWhichParametersAreNotTaken()
{
    Bench bench;
    bench.printer.host().answers.status = record("60");
    const Exchange::Result result = bench.resultOf([](Exchange &exchange) {
        exchange.set(Parameters{{s("eleSpeed"), s("61")}, {s("printHeight"), s("5.0")}});
    });
    QCOMPARE(result.ending, Ending::NotTaken);
    QCOMPARE(result.kept, QStringList(s("eleSpeed")));

    bench.printer.host().answers.status->printStatus = 8; // the token is rejected
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.set({}); }), Ending::TokenRejected);
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.askStatus(); }),
             Ending::TokenRejected);
    QCOMPARE(bench.printer.host().count(s("sigSetPrintPara")), 1);
}

void TestExchange::sendsTheToken()
{
    Bench bench;
    bench.exchange->setToken(s("secret"));
    bench.endingOf([](Exchange &exchange) { exchange.pause(); });
    QVERIFY(bench.printer.host().takeCalls().last().endsWith(s(", secret)")));
    bench.endingOf([](Exchange &exchange) { exchange.set({}); });
    QCOMPARE(bench.printer.host().takeCalls().filter(s(", secret)")).size(), 3);
}

void TestExchange::sharesALinkWithOtherExchanges()
{
    Bench bench;
    bench.printer.host().answers.status = record("60");
    Exchange status(bench.link);
    QVector<Ending> endings;
    QObject::connect(&status, &Exchange::ended,
                     [&](const Exchange::Result &result) { endings.append(result.ending); });
    status.askStatus();
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.pause(); }), Ending::Done);
    QVERIFY(waitUntil([&] { return !endings.isEmpty(); }));
    status.askStatus();
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.set({}); }), Ending::Done);
    QVERIFY(waitUntil([&] { return endings.size() == 2; }));
    QCOMPARE(endings, QVector<Ending>(2, Ending::Done));
}

void TestExchange::opensAnewOnTheSameLink()
{
    Bench bench;
    bench.proxy.cut();
    QVERIFY(waitUntil([&] { return !bench.link.isOpen(); }));
    QCOMPARE(outcomeOfOpening(bench.link), Fault::None);
    QCOMPARE(outcomeOfOpening(bench.link), Fault::None); // open already
    QCOMPARE(bench.proxy.connectionCount(), 2);
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.askVersion(); }), Ending::Done);
}

void TestExchange::saysThatNobodyAnswersInTime()
{
    TimeLimits limits;
    limits.reply = 100;
    Bench bench(limits);
    bench.proxy.freeze();
    for (const Ask &ask : {Ask([](Exchange &exchange) { exchange.askStatus(); }),
                           Ask([](Exchange &exchange) { exchange.askVersion(); }),
                           Ask([](Exchange &exchange) { exchange.print(s("x")); }),
                           Ask([](Exchange &exchange) { exchange.set({}); })}) {
        const Exchange::Result result = bench.resultOf(ask);
        QCOMPARE(result.ending, Ending::NoAnswer);
        QCOMPARE(result.timeLimit, 100);
    }
}

void TestExchange::saysThatTheConnectionIsLost()
{
    Bench bench;
    bench.printer.host().during(s("sigGetPrinterStatus"),
                                [&] { bench.proxy.cut(CuttingProxy::Ending::Reset); });
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.set({}); }), Ending::ConnectionLost);
    QVERIFY(bench.link.wasOpen());
}

void TestExchange::saysThatThereIsNoConnection()
{
    Bench bench;
    bench.link.close();
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.stop(); }), Ending::ConnectionLost);
    QCOMPARE(bench.printer.host().count(s("sigDoPrintStop")), 0);
}

void TestExchange::endsAnAbandonedCommandNever()
{
    Bench bench;
    int ends = 0;
    QObject::connect(bench.exchange.get(), &Exchange::ended, [&] { ++ends; });
    bench.exchange->pause();
    QVERIFY(bench.exchange->isUnderWay());
    bench.exchange->abandon();
    QVERIFY(!bench.exchange->isUnderWay());
    bench.exchange->pause();
    bench.exchange->askVersion(); // in the place of the pause
    Exchange last(bench.link);
    bool hasEnded = false;
    QObject::connect(&last, &Exchange::ended, [&] { hasEnded = true; });
    last.stop(); // answered after all of them
    QVERIFY(waitUntil([&] { return hasEnded; }));
    QCOMPARE(ends, 1);
    bench.exchange->pause();
    bench.exchange->abandon();
    bench.proxy.cut();
    QVERIFY(waitUntil([&] { return !bench.link.isOpen(); }));
    QCOMPARE(ends, 1);
}

void TestExchange::saysWhyNoConnectionComesAbout_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<Fault>("fault");
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    QTest::newRow("refused") << urlOf(closed.serverPort()) << Fault::Refused;
    QTest::newRow("unknown host") << QUrl(s("ws://printer.invalid:80")) << Fault::UnknownHost;
    QTest::newRow("scheme") << QUrl(s("http://127.0.0.1:80")) << Fault::BadAddress;
    QTest::newRow("no URL") << QUrl() << Fault::BadAddress;
}

void TestExchange::saysWhyNoConnectionComesAbout()
{
    QFETCH(QUrl, url);
    QFETCH(Fault, fault);
    PrinterLink link(url, {});
    QCOMPARE(outcomeOfOpening(link), fault);
    QVERIFY(!link.wasOpen());
    QCOMPARE(link.faultText().isEmpty(), fault == Fault::BadAddress);
}

void TestExchange::saysThatTheHandshakeIsRefused_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("isClosed"); // after the answer
    QTest::addColumn<QByteArray>("scheme");
    QTest::addColumn<Fault>("fault");
    const QByteArray page = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
    QTest::newRow("web server") << page << true << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("web server that waits")
        << page << false << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("another protocol")
        << QByteArray("220 ready\r\n\r\n") << false << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("no answer at all")
        << QByteArray() << true << QByteArray("ws") << Fault::NotAWebSocket;
    QTest::newRow("silence") << QByteArray() << false << QByteArray("ws") << Fault::TimedOut;
    QTest::newRow("no TLS") << page << true << QByteArray("wss") << Fault::Tls;
}

void TestExchange::saysThatTheHandshakeIsRefused()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, isClosed);
    QFETCH(QByteArray, scheme);
    QFETCH(Fault, fault);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, [=] {
            socket->write(answer);
            if (isClosed)
                socket->disconnectFromHost();
        });
    });
    TimeLimits limits;
    // Only silence takes as long as it may.
    limits.connecting = fault == Fault::TimedOut ? 100 : zytest::patience * 2;
    PrinterLink link(urlOf(server.serverPort(), scheme.constData()), limits);
    QCOMPARE(outcomeOfOpening(link), fault);
}

void TestExchange::noticesThatThePrinterIsGone()
{
    Bench bench;
    int drops = 0;
    QObject::connect(&bench.link, &PrinterLink::dropped, [&] { ++drops; });
    bench.printer.destroyServer();
    QVERIFY(waitUntil([&] { return drops > 0; }));
    QVERIFY(!bench.link.isOpen());
    QCOMPARE(drops, 1);
    bench.proxy.freeze();
    bench.link.open();
    bench.link.close();
}

void TestExchange::staysSilentOnceClosed()
{
    Bench bench;
    const auto never = [] { QFAIL("a closed link says something"); };
    QObject::connect(&bench.link, &PrinterLink::opened, never);
    QObject::connect(&bench.link, &PrinterLink::failed, never);
    QObject::connect(&bench.link, &PrinterLink::dropped, never);
    bench.link.close();
    QVERIFY(bench.printer.waitForConnections(0));
    bench.link.open();
    bench.link.close();
    QVERIFY(waitUntil([&] { return bench.proxy.connectionCount() == 2; }));
    QVERIFY(bench.printer.waitForConnections(0));
}

void TestExchange::mayBeDeletedInItsOwnSlots()
{
    TestPrinter printer;
    auto link = std::make_unique<PrinterLink>(urlOf(printer.port()), TimeLimits());
    auto exchange = std::make_unique<Exchange>(*link);
    QObject::connect(exchange.get(), &Exchange::checking, [&] {
        exchange.reset();
        link.reset();
    });
    QObject::connect(link.get(), &PrinterLink::opened, [&] { exchange->print(s("x")); });
    link->open();
    QVERIFY(waitUntil([&] { return !link; }));
    QVERIFY(printer.waitForConnections(0));

    link = std::make_unique<PrinterLink>(QUrl(), TimeLimits());
    QObject::connect(link.get(), &PrinterLink::failed, [&] { link.reset(); });
    link->open();
    QVERIFY(waitUntil([&] { return !link; }));
}

ZY_TEST(TestExchange)

#include "tst_exchange.moc"
