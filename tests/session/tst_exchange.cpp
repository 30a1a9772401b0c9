// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Commands, with a real server and through a proxy that mistreats them.

#include "bench.h"
#include "testprogram.h"

#include <QTest>

using namespace zytest;
using zysession::Parameters;
using zysession::PrinterStatus;
using Ending = Exchange::Ending;

namespace
{

PrintStatusPara record(const char *eleSpeed)
{
    PrintStatusPara para;
    para.initExposure = "30"_s;
    para.delayLight = "1"_s;
    para.printExposure = "2.5"_s;
    para.printHeight = "5"_s;
    para.eleSpeed = QString::fromUtf8(eleSpeed);
    para.bottomExposureNum = "6"_s;
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
    void setsWhatEitherOfTwoSetsNames();
    void sendsTheToken();
    void sharesALinkWithOtherExchanges();

    // Rainy day.
    void saysThatNobodyAnswersInTime();
    void saysThatTheConnectionIsLost();
    void saysThatThereIsNoConnection();
    void endsAnAbandonedCommandNever();
    void mayBeDeletedInItsOwnSlots();
};

void TestExchange::asksForStatusAndVersion()
{
    Bench bench;
    PrintStatusPara status = record("60");
    status.printStatus = 1;
    status.curSliceLayer = "7"_s;
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
    QCOMPARE(Exchange::versionOf(version.answer), "1"_s);
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
    QCOMPARE(bench.printer.host().count("sigDoPrintPause"_s), 1);
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.stop(); }), ending);
    QCOMPARE(bench.printer.host().count("sigDoPrintStop"_s), 1);
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
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.print("x.zydlp"_s); }), ending);
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
    bench.printer.host().during("checkFile"_s, [&] { waitUntil([&] { return isChecking; }); });
    const Exchange::Result result
        = bench.resultOf([](Exchange &exchange) { exchange.print("x.zydlp"_s); });
    QVERIFY(isChecking);
    QCOMPARE(result.ending, Ending::NoAnswer);
    QCOMPARE(result.timeLimit, 100);
}

void TestExchange::setsSomeParametersAndKeepsTheOthers()
{
    Bench bench;
    bench.printer.host().answers.status = record("60.0");
    const Exchange::Result result = bench.resultOf([](Exchange &exchange) {
        exchange.set(Parameters{{"eleSpeed"_s, "60"_s}});
    });
    QCOMPARE(result.ending, Ending::Done);
    QCOMPARE(PrinterStatus::fromReply(result.answer).parameters.value("eleSpeed"_s), "60.0"_s);
    // All six, the other five as they were.
    const QStringList calls = bench.printer.host().calls().filter("sigSetPrintPara("_s);
    QCOMPARE(calls, QStringList("sigSetPrintPara(||||30|1|2.5|5|60|6|||0, )"_s));
}

void TestExchange::saysWhichParametersAreNotTaken()
{
    Bench bench;
    bench.printer.host().answers.status = record("60");
    const Exchange::Result result = bench.resultOf([](Exchange &exchange) {
        exchange.set(Parameters{{"eleSpeed"_s, "61"_s}, {"printHeight"_s, "5.0"_s}});
    });
    QCOMPARE(result.ending, Ending::NotTaken);
    QCOMPARE(result.kept, QStringList("eleSpeed"_s));

    bench.printer.host().answers.status->printStatus = 8; // the token is rejected
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.set({}); }), Ending::TokenRejected);
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.askStatus(); }),
             Ending::TokenRejected);
    QCOMPARE(bench.printer.host().count("sigSetPrintPara"_s), 1);
}

void TestExchange::setsWhatEitherOfTwoSetsNames()
{
    Bench bench;
    bench.printer.host().answers.status = record("60");
    // The second while the first waits for the status, and again while it waits for its answer.
    for (const QString &moment : {QString(), "sigSetPrintPara"_s}) {
        bench.printer.host().takeCalls();
        const auto setSecond = [&] { bench.exchange->set(Parameters{{"printHeight"_s, "7"_s}}); };
        if (!moment.isEmpty())
            bench.printer.host().during(moment, [&] {
                bench.printer.host().during(moment, {});
                setSecond();
            });
        const Exchange::Result result = bench.resultOf([&](Exchange &exchange) {
            exchange.set(Parameters{{"eleSpeed"_s, "61"_s}, {"printHeight"_s, "6"_s}});
            if (moment.isEmpty())
                setSecond();
        });
        const QStringList calls = bench.printer.host().takeCalls().filter("sigSetPrintPara("_s);
        QCOMPARE(calls.last(), "sigSetPrintPara(||||30|1|2.5|7|61|6|||0, )"_s);
        QCOMPARE(result.kept, (QStringList{"eleSpeed"_s, "printHeight"_s}));
    }
    // A set after the end knows nothing of them.
    const Exchange::Result later = bench.resultOf([](Exchange &exchange) { exchange.set({}); });
    QCOMPARE(later.ending, Ending::Done);
}

void TestExchange::sendsTheToken()
{
    Bench bench;
    bench.exchange->setToken("secret"_s);
    bench.endingOf([](Exchange &exchange) { exchange.pause(); });
    QVERIFY(bench.printer.host().takeCalls().last().endsWith(", secret)"_s));
    bench.endingOf([](Exchange &exchange) { exchange.set({}); });
    QCOMPARE(bench.printer.host().takeCalls().filter(", secret)"_s).size(), 3);
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

void TestExchange::saysThatNobodyAnswersInTime()
{
    TimeLimits limits;
    limits.reply = 100;
    Bench bench(limits);
    bench.proxy.freeze();
    for (const Ask &ask : {Ask([](Exchange &exchange) { exchange.askStatus(); }),
                           Ask([](Exchange &exchange) { exchange.askVersion(); }),
                           Ask([](Exchange &exchange) { exchange.print("x"_s); }),
                           Ask([](Exchange &exchange) { exchange.set({}); })}) {
        const Exchange::Result result = bench.resultOf(ask);
        QCOMPARE(result.ending, Ending::NoAnswer);
        QCOMPARE(result.timeLimit, 100);
    }
}

void TestExchange::saysThatTheConnectionIsLost()
{
    Bench bench;
    bench.printer.host().during("sigGetPrinterStatus"_s,
                                [&] { bench.proxy.cut(CuttingProxy::Ending::Reset); });
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.set({}); }), Ending::ConnectionLost);
    QVERIFY(bench.link.wasOpen());
}

void TestExchange::saysThatThereIsNoConnection()
{
    Bench bench;
    bench.link.close();
    QCOMPARE(bench.endingOf([](Exchange &exchange) { exchange.stop(); }), Ending::ConnectionLost);
    QCOMPARE(bench.printer.host().count("sigDoPrintStop"_s), 0);
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

void TestExchange::mayBeDeletedInItsOwnSlots()
{
    TestPrinter printer;
    auto link = std::make_unique<PrinterLink>(urlOf(printer.port()), TimeLimits());
    auto exchange = std::make_unique<Exchange>(*link);
    QObject::connect(exchange.get(), &Exchange::checking, [&] {
        exchange.reset();
        link.reset();
    });
    QObject::connect(link.get(), &PrinterLink::opened, [&] { exchange->print("x"_s); });
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
