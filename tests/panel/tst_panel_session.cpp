// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The session without widgets, against the library's server: connecting, sending, printing.

#include "listener.h"
#include "testfile.h"
#include "testprinter.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace zypanel;
using Link = PrinterSession::Link;
using Transfer = PrinterSession::Transfer;
using State = PrinterStatus::State;

namespace
{

constexpr int patience = 60000; // ms
const QString name = QStringLiteral("part.zydlp");

} // namespace

class TestPanelSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatThePrinterDoes();
    void sendsAFileAndRestsItsStatusRequests();
    void commandsAreAnsweredInWords_data();
    void commandsAreAnsweredInWords();
    void printAnswersComeInWords_data();
    void printAnswersComeInWords();
    void newParametersAreConfirmedByTheStatus();
    void cancelLeavesNothingOnThePrinter();
    void resumesAfterThePrinterWasGone();
    void disconnectingOnPurposeCanBeResumedToo();

private:
    RandomFile m_file;
};

void TestPanelSession::tellsWhatThePrinterDoes()
{
    TestPrinter printer;
    printer.status.filename = name;
    printer.status.sliceLayerCount = QStringLiteral("240");
    printer.status.curSliceLayer = QStringLiteral("12");
    printer.status.printStatus = 1;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.status().state, State::Printing, patience);
    QCOMPARE(listener.session.status().layer, 12);
    QCOMPARE(listener.session.status().layerCount, 240);
    QCOMPARE(listener.session.status().parameters.value(QStringLiteral("printExposure")),
             QStringLiteral("2.5"));
    printer.status.printStatus = 2;
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.status().state, State::Complete, patience);
    QVERIFY(listener.hasSaid(stateNotice(State::Complete, name)));
}

void TestPanelSession::sendsAFileAndRestsItsStatusRequests()
{
    TestPrinter printer;
    Listener listener(1);
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_VERIFY_WITH_TIMEOUT(printer.statusRequests > 3, patience);

    int requestsAtStart = 0;
    int requestsAtEnd = 0;
    QVector<qint64> received;
    connect(&listener.session, &PrinterSession::transferProgress, &printer,
            [&](qint64 bytes, qint64 total) {
                QCOMPARE(total, 5 * mebibyte + 1);
                if (received.isEmpty())
                    requestsAtStart = printer.statusRequests;
                requestsAtEnd = printer.statusRequests;
                received.append(bytes);
            });
    const QSignalSpy stored(&listener.session, &PrinterSession::fileStored);
    QVERIFY(listener.session.send(m_file.create(5 * mebibyte + 1), name));
    QTRY_COMPARE_WITH_TIMEOUT(stored.count(), 1, patience);
    QCOMPARE(received.size(), 6);
    QCOMPARE(received.last(), 5 * mebibyte + 1);
    QCOMPARE(requestsAtEnd, requestsAtStart);
    QVERIFY(contentOf(printer.pathOf(name)) == m_file.content());
    QVERIFY(listener.hasSaid(checkStateNotice(1, name)));
    QTRY_VERIFY_WITH_TIMEOUT(printer.statusRequests > requestsAtEnd, patience);
}

void TestPanelSession::commandsAreAnsweredInWords_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("word");
    QTest::newRow("done") << 1 << "CMD_SUCCES";
    QTest::newRow("failed") << 0 << "CMD_FAIL";
    QTest::newRow("wrong token") << -1 << "TOKEN_ERROR";
}

void TestPanelSession::commandsAreAnsweredInWords()
{
    QFETCH(int, answer);
    QFETCH(QString, word);
    TestPrinter printer;
    printer.pauseAnswer = answer;
    printer.stopAnswer = answer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    listener.session.pausePrint();
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasSaid(commandResultNotice(Command::Pause, word)), patience);
    listener.session.stopPrint();
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasSaid(commandResultNotice(Command::Stop, word)), patience);
}

void TestPanelSession::printAnswersComeInWords_data()
{
    QTest::addColumn<int>("mayPrint");
    QTest::addColumn<int>("check");
    QTest::addColumn<int>("code");
    QTest::newRow("started") << 1 << 1 << 0;
    QTest::newRow("refused") << 0 << 1 << 1;
    QTest::newRow("busy after the check") << 1 << 2 << 1;
    QTest::newRow("check failed") << 1 << 0 << 3;
    QTest::newRow("wrong token") << -1 << 1 << 4;
}

void TestPanelSession::printAnswersComeInWords()
{
    QFETCH(int, mayPrint);
    QFETCH(int, check);
    QFETCH(int, code);
    TestPrinter printer;
    printer.mayPrint = mayPrint;
    printer.printCheck = check;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    listener.session.startPrint(name);
    QTRY_VERIFY_WITH_TIMEOUT(listener.hasSaid(printAnswerNotice(code, name)), patience);
    QCOMPARE(listener.hasSaid(printAnswerNotice(2, name)), mayPrint == 1);
}

void TestPanelSession::newParametersAreConfirmedByTheStatus()
{
    TestPrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QTRY_VERIFY_WITH_TIMEOUT(!listener.session.status().parameters.isEmpty(), patience);
    Parameters wanted = listener.session.status().parameters;
    wanted.insert(QStringLiteral("printExposure"), QStringLiteral("3.1"));
    listener.session.setParameters(wanted);
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.said.contains(QStringLiteral("The printer uses the new print parameters.")),
        patience);
    QCOMPARE(printer.status.printExposure, QStringLiteral("3.1"));
    QCOMPARE(printer.status.eleSpeed, QStringLiteral("3"));
}

void TestPanelSession::cancelLeavesNothingOnThePrinter()
{
    TestPrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    connect(&listener.session, &PrinterSession::transferProgress, &listener.session,
            [&](qint64 bytes) {
                if (bytes == 2 * mebibyte)
                    listener.session.cancelTransfer();
            });
    QVERIFY(listener.session.send(m_file.create(8 * mebibyte), name));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    QVERIFY(QDir(printer.pathOf(QString())).isEmpty());
    // And the printer is ready for the next file.
    const QSignalSpy stored(&listener.session, &PrinterSession::fileStored);
    QVERIFY(listener.session.send(m_file.create(mebibyte), name));
    QTRY_COMPARE_WITH_TIMEOUT(stored.count(), 1, patience);
}

void TestPanelSession::resumesAfterThePrinterWasGone()
{
    TestPrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const auto dropping = connect(&listener.session, &PrinterSession::transferProgress, &printer,
                                  [&](qint64 bytes) {
                                      if (bytes == 3 * mebibyte)
                                          printer.stop();
                                  });
    QVERIFY(listener.session.send(m_file.create(9 * mebibyte), name));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Interrupted, patience);
    QCOMPARE(listener.session.link(), Link::Closed);
    QCOMPARE(listener.said.last(),
             linkFaultNotice(LinkFault::LostWhileSending, printer.url().authority()).text);
    disconnect(dropping);

    // Nobody there yet: still offered.
    listener.session.resumeTransfer();
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.link(), Link::Closed, patience);
    QCOMPARE(listener.session.transfer(), Transfer::Interrupted);

    printer.start();
    QVector<qint64> received;
    connect(&listener.session, &PrinterSession::transferProgress, &printer,
            [&](qint64 bytes) { received.append(bytes); });
    listener.session.resumeTransfer();
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    QVERIFY(!received.isEmpty());
    QCOMPARE(received.first(), 4 * mebibyte);
    QVERIFY(contentOf(printer.pathOf(name)) == m_file.content());
}

void TestPanelSession::disconnectingOnPurposeCanBeResumedToo()
{
    TestPrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const auto leaving
        = connect(&listener.session, &PrinterSession::transferProgress, &listener.session,
                  [&] { listener.session.disconnectFromPrinter(); });
    QVERIFY(listener.session.send(m_file.create(4 * mebibyte), name));
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Interrupted, patience);
    disconnect(leaving);
    listener.session.resumeTransfer();
    QTRY_COMPARE_WITH_TIMEOUT(listener.session.transfer(), Transfer::Idle, patience);
    QVERIFY(contentOf(printer.pathOf(name)) == m_file.content());
}

QTEST_GUILESS_MAIN(TestPanelSession)
#include "tst_panel_session.moc"
