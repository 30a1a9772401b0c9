// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel's connection for commands without widgets, against the library's server.

#include "listener.h"
#include "restartableprinter.h"
#include "words.h"

#include <testprogram.h>

#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>
#include <QWebSocketServer>

using namespace zypanel;
using zytest::patience;
using Answer = zysession::Exchange::Ending;
using ConnectionFault = ZySendResult::ConnectionFault;
using Link = PrinterControl::Link;
using State = zysession::PrinterStatus::State;

namespace
{

const QString name = QStringLiteral("part.zydlp");

/// Accepts connections and says nothing.
class SilentPrinter
{
public:
    SilentPrinter() : m_server(QStringLiteral("silent"), QWebSocketServer::NonSecureMode)
    {
        m_server.listen(QHostAddress::LocalHost);
    }
    QUrl url() const { return m_server.serverUrl(); }

private:
    QWebSocketServer m_server;
};

} // namespace

Q_DECLARE_METATYPE(zysession::Exchange::Ending)

class TestPanelControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatThePrinterDoes();
    void commandsAreAnsweredInWords_data();
    void commandsAreAnsweredInWords();
    void printAnswersComeInWords_data();
    void printAnswersComeInWords();
    void aPausedPrintGoesOn();
    void newParametersAreConfirmedByTheStatus();
    void keptParametersAreNamed();
    void anotherProtocolVersionIsReported();

    void aPortWhereNobodyListensIsReported();
    void aHandshakeThatNeverEndsIsReported();
    void aLostConnectionIsOpenedAgain();
    void whatIsKnownOutlivesALostConnection();
    void aSilentPrinterIsReported();
    void aCommandWithoutAnAnswerIsReported();
    void anotherPrinterStartsFromNothing();
};

void TestPanelControl::tellsWhatThePrinterDoes()
{
    RestartablePrinter printer;
    printer.status.filename = name;
    printer.status.sliceLayerCount = QStringLiteral("240");
    printer.status.curSliceLayer = QStringLiteral("12");
    printer.status.printStatus = 1;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_COMPARE_WITH_TIMEOUT(listener.control.status().state, State::Printing, patience);
    QCOMPARE(listener.control.status().layer, 12);
    QCOMPARE(listener.control.status().layerCount, 240);
    QCOMPARE(listener.control.status().parameters.value(QStringLiteral("printExposure")),
             QStringLiteral("2.5"));
    printer.status.printStatus = 2;
    QTRY_COMPARE_WITH_TIMEOUT(listener.control.status().state, State::Complete, patience);
    QVERIFY(listener.hasSaid(stateNotice(State::Complete, name)));
}

void TestPanelControl::commandsAreAnsweredInWords_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<Answer>("ending");
    QTest::newRow("done") << 1 << Answer::Done;
    QTest::newRow("failed") << 0 << Answer::Refused;
    QTest::newRow("wrong token") << -1 << Answer::TokenRejected;
}

void TestPanelControl::commandsAreAnsweredInWords()
{
    QFETCH(int, answer);
    QFETCH(Answer, ending);
    RestartablePrinter printer;
    printer.pauseAnswer = answer;
    printer.stopAnswer = answer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    listener.control.pausePrint();
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.hasSaid(commandNotice(PrinterCommand::Pause, ending, QString())), patience);
    listener.control.stopPrint();
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.hasSaid(commandNotice(PrinterCommand::Stop, ending, QString())), patience);
}

void TestPanelControl::printAnswersComeInWords_data()
{
    QTest::addColumn<int>("mayPrint");
    QTest::addColumn<int>("check");
    QTest::addColumn<Answer>("ending");
    QTest::newRow("started") << 1 << 1 << Answer::Done;
    QTest::newRow("refused") << 0 << 1 << Answer::Busy;
    QTest::newRow("busy after the check") << 1 << 2 << Answer::Busy;
    QTest::newRow("check failed") << 1 << 0 << Answer::CheckFailed;
    QTest::newRow("wrong token") << -1 << 1 << Answer::TokenRejected;
}

void TestPanelControl::printAnswersComeInWords()
{
    QFETCH(int, mayPrint);
    QFETCH(int, check);
    QFETCH(Answer, ending);
    RestartablePrinter printer;
    printer.mayPrint = mayPrint;
    printer.printCheck = check;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const QSignalSpy checked(&listener.control, &PrinterControl::checkingChanged);
    listener.control.startPrint(name);
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasSaid(commandNotice(PrinterCommand::Print, ending, name)),
                             patience);
    QCOMPARE(checked.count(), mayPrint == 1 ? 2 : 0);
    QVERIFY(!listener.control.isChecking());
}

void TestPanelControl::aPausedPrintGoesOn()
{
    RestartablePrinter printer;
    printer.status.filename = name;
    printer.status.printStatus = 5; // paused
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_COMPARE_WITH_TIMEOUT(listener.control.status().state, State::Paused, patience);
    listener.control.startPrint(name);
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.hasSaid(commandNotice(PrinterCommand::Continue, Answer::Done, name)), patience);
}

void TestPanelControl::newParametersAreConfirmedByTheStatus()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    listener.control.setParameters({{QStringLiteral("printExposure"), QStringLiteral("3.1")}});
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.hasSaid(commandNotice(PrinterCommand::SetParameters, Answer::Done, QString())),
        patience);
    QCOMPARE(printer.status.printExposure, QStringLiteral("3.1"));
    QCOMPARE(printer.status.eleSpeed, QStringLiteral("3"));
}

void TestPanelControl::keptParametersAreNamed()
{
    RestartablePrinter printer;
    printer.takesParameters = false;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    listener.control.setParameters({{QStringLiteral("eleSpeed"), QStringLiteral("900")}});
    QTRY_VERIFY_WITH_TIMEOUT(listener.said.contains(QStringLiteral(
                                 "The printer keeps values of its own for: Lift speed.")),
                             patience);
}

void TestPanelControl::anotherProtocolVersionIsReported()
{
    RestartablePrinter printer;
    printer.version = QStringLiteral("2");
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_VERIFY_WITH_TIMEOUT(!listener.said.filter(QStringLiteral("version “2”")).isEmpty(),
                             patience);
}

void TestPanelControl::aPortWhereNobodyListensIsReported()
{
    QTcpServer taken;
    QVERIFY(taken.listen(QHostAddress::LocalHost));
    const QUrl url(QStringLiteral("ws://127.0.0.1:%1").arg(taken.serverPort()));
    taken.close();
    Listener listener;
    listener.beginConnecting(url);
    QCOMPARE(listener.control.link(), Link::Connecting);
    QVERIFY(listener.awaitLink(Link::Closed));
    QVERIFY(listener.hasSaid(connectionFaultNotice(ConnectionFault::Refused, url.authority())));
}

void TestPanelControl::aHandshakeThatNeverEndsIsReported()
{
    QTcpServer mute;
    QVERIFY(mute.listen(QHostAddress::LocalHost));
    const QUrl url(QStringLiteral("ws://127.0.0.1:%1").arg(mute.serverPort()));
    Listener listener;
    listener.timing.limits.connecting = 200;
    listener.beginConnecting(url);
    QVERIFY(listener.awaitLink(Link::Closed));
    QVERIFY(listener.hasSaid(connectionFaultNotice(ConnectionFault::TimedOut, url.authority())));
}

void TestPanelControl::aLostConnectionIsOpenedAgain()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    printer.stop();
    QVERIFY(listener.awaitLink(Link::Lost));
    QVERIFY(!listener.said.filter(QStringLiteral("was lost")).isEmpty());
    // Several attempts fail first.
    QTest::qWait(200);
    QCOMPARE(listener.control.link(), Link::Lost);
    printer.start();
    QVERIFY(listener.awaitLink(Link::Open));
}

void TestPanelControl::whatIsKnownOutlivesALostConnection()
{
    RestartablePrinter printer;
    printer.status.filename = name;
    printer.status.printStatus = 1;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_COMPARE_WITH_TIMEOUT(listener.control.status().state, State::Printing, patience);
    printer.stop();
    QVERIFY(listener.awaitLink(Link::Lost));
    QCOMPARE(listener.control.status().filename, name);
    QVERIFY(listener.control.lastHeard().isValid());
    listener.control.disconnectFromPrinter();
    QCOMPARE(listener.control.status().filename, QString());
}

void TestPanelControl::aSilentPrinterIsReported()
{
    const SilentPrinter printer;
    Listener listener;
    listener.timing.limits.reply = 100;
    listener.timing.limits.check = 500;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.awaitLink(Link::Silent));
    QVERIFY(!listener.said.filter(QStringLiteral("does not answer at the moment")).isEmpty());
    // A connection without a sign of life for so long is opened anew.
    QVERIFY(listener.awaitLink(Link::Lost));
    QVERIFY(listener.awaitLink(Link::Open));
}

void TestPanelControl::aCommandWithoutAnAnswerIsReported()
{
    const SilentPrinter printer;
    Listener listener;
    listener.timing.limits.reply = 100;
    QVERIFY(listener.connectTo(printer.url()));
    listener.control.pausePrint();
    const Notice notice = commandNotice(PrinterCommand::Pause, Answer::NoAnswer, QString());
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasSaid(notice), patience);
    QVERIFY(notice.text.contains(QStringLiteral("cannot be taken back")));
}

void TestPanelControl::anotherPrinterStartsFromNothing()
{
    RestartablePrinter first;
    first.status.filename = name;
    first.status.printStatus = 1;
    const SilentPrinter second;
    Listener listener;
    const QSignalSpy changed(&listener.control, &PrinterControl::printerChanged);
    QVERIFY(listener.connectTo(first.url()));
    QTRY_COMPARE_WITH_TIMEOUT(listener.control.status().state, State::Printing, patience);
    QCOMPARE(changed.count(), 1);
    listener.beginConnecting(second.url());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(listener.control.status().filename, QString());
    QVERIFY(listener.awaitLink(Link::Open));
    QCOMPARE(listener.control.status().filename, QString());
}

ZY_TEST(TestPanelControl)
#include "tst_control.moc"
