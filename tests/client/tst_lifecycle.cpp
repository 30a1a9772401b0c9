// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client's connection: opening, closing, dropping, opening again.

#include "rawprinter.h"
#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QTcpServer>

#include <functional>
#include <memory>

using zytest::RawPrinter;
using zytest::ScriptedPrinter;
using Session = zytest::Session<ScriptedPrinter>;
using RawSession = zytest::Session<RawPrinter>;

using Ending = std::function<void(RawSession &)>;

Q_DECLARE_METATYPE(Ending)

class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensTheConnectionInItsConstructor();
    void reportsTheSocketState();
    void logsStateChanges();
    void closeGivesOnePauseSuccessInsideTheCall();
    void opensAgainAfterClose();
    void openingAgainDoesNotDoubleDelivery();
    void opensAnotherUrlWhileConnected();
    void opensAgainInsideASlot_data();
    void opensAgainInsideASlot();
    void destructionClosesTheConnection();

    void answersAClosingPeer_data();
    void answersAClosingPeer();
    void reportsADroppedConnection_data();
    void reportsADroppedConnection();
    void handlesMessagesBeforeTheDropThatFollowsThem();
    void aFirstAttemptThatFailsEmitsNothing();
    void aLaterAttemptThatFailsIsADisconnect();
    void anInvalidUrlEmitsNothing();
    void closeWhileUnconnectedTurnsTheNextDropIntoPauseSuccess();
    void canBeDestroyedWhileConnecting();
};

namespace
{

QString stateLine(const char *state)
{
    return "onStateChanged(QAbstractSocket::SocketState state) = QAbstractSocket::"_s
        + QString::fromUtf8(state);
}

const QString connectedLine = "connected()"_s;
const QString disconnectedLine = "disconnected()"_s;
const QString pauseSuccessLine = "pauseSuccess()"_s;

// How a connection ends.
void closeByClient(RawSession &session)
{
    session.client.close();
}

void closeByPeer(RawSession &session)
{
    session.printer.write(RawPrinter::closeFrame(1000));
}

void dropByPeer(RawSession &session)
{
    session.printer.drop();
}

void resetByPeer(RawSession &session)
{
    session.printer.reset();
}

} // namespace

void TestLifecycle::opensTheConnectionInItsConstructor()
{
    Session session;

    WAIT_COMPARE(session.trace.lines(), QStringList{connectedLine});
    QCOMPARE(session.printer.connectionCount(), 1);
    QCOMPARE(session.printer.texts(), QStringList());
}

void TestLifecycle::reportsTheSocketState()
{
    Session session;
    QCOMPARE(session.client.socketConnectStatus(), QAbstractSocket::ConnectingState);
    QVERIFY(session.open());
    QCOMPARE(session.client.socketConnectStatus(), QAbstractSocket::ConnectedState);
    session.client.close();
    QCOMPARE(session.client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
}

void TestLifecycle::logsStateChanges()
{
    Session session;
    // The attempt starts before the client listens for state changes: no ConnectingState.
    QCOMPARE(session.logLines(), QStringList());
    WAIT_COMPARE(session.logLines(), QStringList{stateLine("ConnectedState")});

    session.log.clear();
    session.client.close();
    QCOMPARE(session.logLines(),
             (QStringList{stateLine("ClosingState"), stateLine("UnconnectedState")}));

    session.log.clear();
    session.client.openWithUrl(session.printer.url());
    QCOMPARE(session.logLines(), QStringList{stateLine("ConnectingState")});
    WAIT_COMPARE(session.logLines(),
                 (QStringList{stateLine("ConnectingState"), stateLine("ConnectedState")}));
}

void TestLifecycle::closeGivesOnePauseSuccessInsideTheCall()
{
    Session session;
    QVERIFY(session.open());

    session.client.close();

    QCOMPARE(session.trace.lines(), QStringList{pauseSuccessLine});
    WAIT_COMPARE(session.printer.closeCodes(),
                 QVector<QWebSocketProtocol::CloseCode>{QWebSocketProtocol::CloseCodeNormal});
    QCOMPARE(session.trace.lines(), QStringList{pauseSuccessLine});
}

void TestLifecycle::opensAgainAfterClose()
{
    Session session;
    QVERIFY(session.open());
    session.client.close();

    session.client.openWithUrl(session.printer.url());
    WAIT_COMPARE(session.trace.lines(), (QStringList{pauseSuccessLine, connectedLine}));
    WAIT_COMPARE(session.printer.connectionCount(), 2);

    // The request to close was forgotten with the first connection.
    session.printer.drop();
    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{pauseSuccessLine, connectedLine, disconnectedLine}));
}

void TestLifecycle::openingAgainDoesNotDoubleDelivery()
{
    Session session;
    QVERIFY(session.open());
    for (int connections = 2; connections <= 4; ++connections) {
        session.client.close();
        session.client.openWithUrl(session.printer.url());
        WAIT_COMPARE(session.printer.connectionCount(), connections);
        WAIT_COMPARE(session.trace.count("connected"_s), connections - 1);
    }
    session.trace.clear();

    session.printer.sendText(R"({"version":"1"})"_s);
    session.printer.sendText("{}"_s);
    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{"checkVersion()"_s, R"(jsonMessageReceived({"version":"1"}))"_s,
                              "jsonMessageReceived({})"_s}));

    session.trace.clear();
    session.printer.drop();
    WAIT_COMPARE(session.trace.lines(), QStringList{disconnectedLine});
}

void TestLifecycle::opensAnotherUrlWhileConnected()
{
    ScriptedPrinter other;
    Session session;
    QVERIFY(session.open());

    session.client.openWithUrl(other.url());
    WAIT_COMPARE(other.connectionCount(), 1);
    WAIT_COMPARE(session.trace.count("connected"_s), 1);
    WAIT_VERIFY(!session.printer.peer());

    session.trace.clear();
    session.client.versionCheckCmd();
    WAIT_COMPARE(other.texts(), QStringList{R"({"cmd":"VERSION_CHECK"})"_s});
    other.sendText("{}"_s);
    WAIT_COMPARE(session.trace.lines(), QStringList{"jsonMessageReceived({})"_s});
}

void TestLifecycle::opensAgainInsideASlot_data()
{
    QTest::addColumn<Ending>("ending");
    QTest::addColumn<QString>("signalLine");
    QTest::newRow("disconnected, closed by the peer") << Ending(closeByPeer) << disconnectedLine;
    QTest::newRow("disconnected, dropped") << Ending(dropByPeer) << disconnectedLine;
    QTest::newRow("disconnected, reset") << Ending(resetByPeer) << disconnectedLine;
    QTest::newRow("pauseSuccess, inside close()") << Ending(closeByClient) << pauseSuccessLine;
}

void TestLifecycle::opensAgainInsideASlot()
{
    QFETCH(Ending, ending);
    QFETCH(QString, signalLine);
    RawSession session;
    QVERIFY(session.open());
    const auto openAgain = [&session] { session.client.openWithUrl(session.printer.url()); };
    connect(&session.client, &ZySslEchoClient::disconnected, this, openAgain);
    connect(&session.client, &ZySslEchoClient::pauseSuccess, this, openAgain);

    ending(session);

    WAIT_VERIFY(session.trace.count("connected"_s) == 1);
    WAIT_COMPARE(session.printer.connectionCount(), 2);
    session.printer.write(RawPrinter::textFrame("{}"_s));
    WAIT_VERIFY(session.trace.count("jsonMessageReceived"_s) == 1);
    QCOMPARE(session.trace.lines(),
             (QStringList{signalLine, connectedLine, "jsonMessageReceived({})"_s}));
}

void TestLifecycle::destructionClosesTheConnection()
{
    RawPrinter printer;
    auto client = std::make_unique<ZySslEchoClient>(printer.url());
    WAIT_VERIFY(printer.isPeerConnected());
    WAIT_COMPARE(client->socketConnectStatus(), QAbstractSocket::ConnectedState);

    client.reset();

    WAIT_COMPARE(printer.closeCodes(), QVector<int>{1000});
    WAIT_VERIFY(!printer.isPeerConnected());
}

void TestLifecycle::answersAClosingPeer_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("answer");
    QTest::newRow("normal") << 1000 << 1000;
    // Qt echoes the peer's code before the client's own close can answer.
    QTest::newRow("going away") << 1001 << 1001;
}

void TestLifecycle::answersAClosingPeer()
{
    QFETCH(int, code);
    QFETCH(int, answer);
    RawSession session;
    session.printer.setAnswersClose(false);
    QVERIFY(session.open());

    session.printer.write(RawPrinter::closeFrame(code));

    WAIT_COMPARE(session.trace.lines(), QStringList{disconnectedLine});
    WAIT_COMPARE(session.printer.closeCodes(), QVector<int>{answer});
    QVERIFY(session.logLines().contains(stateLine("ClosingState")));
    QCOMPARE(session.logLines().constLast(), stateLine("UnconnectedState"));
}

void TestLifecycle::reportsADroppedConnection_data()
{
    QTest::addColumn<Ending>("ending");
    QTest::newRow("ended in order") << Ending(dropByPeer);
    QTest::newRow("reset") << Ending(resetByPeer);
}

void TestLifecycle::reportsADroppedConnection()
{
    QFETCH(Ending, ending);
    RawSession session;
    QVERIFY(session.open());

    ending(session);

    WAIT_COMPARE(session.client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    WAIT_COMPARE(session.trace.lines(), QStringList{disconnectedLine});
}

void TestLifecycle::handlesMessagesBeforeTheDropThatFollowsThem()
{
    RawSession session;
    QVERIFY(session.open());

    session.printer.write(RawPrinter::textFrame("{}"_s) + RawPrinter::textFrame(R"({"n":1})"_s)
                          + RawPrinter::closeFrame(1000));
    session.printer.drop();

    WAIT_COMPARE(session.trace.lines(),
                 (QStringList{"jsonMessageReceived({})"_s, R"(jsonMessageReceived({"n":1}))"_s,
                              disconnectedLine}));
}

void TestLifecycle::aFirstAttemptThatFailsEmitsNothing()
{
    zytest::LogCapture log;
    ZySslEchoClient client{QUrl(zytest::deadUrl())};
    zytest::SignalTrace trace(client);

    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::UnconnectedState);

    QCOMPARE(log.texts("zywebsocket.client"_s), QStringList{stateLine("UnconnectedState")});
    QCOMPARE(trace.lines(), QStringList());

    // Nor does it keep the client from connecting later.
    ScriptedPrinter printer;
    client.openWithUrl(printer.url());
    WAIT_COMPARE(trace.lines(), QStringList{connectedLine});
}

void TestLifecycle::aLaterAttemptThatFailsIsADisconnect()
{
    Session session;
    QVERIFY(session.open());
    session.client.close();
    session.trace.clear();

    session.client.openWithUrl(QUrl(zytest::deadUrl()));

    WAIT_COMPARE(session.client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    WAIT_COMPARE(session.trace.lines(), QStringList{disconnectedLine});
}

void TestLifecycle::anInvalidUrlEmitsNothing()
{
    ZySslEchoClient client{QUrl()};
    zytest::SignalTrace trace(client);

    ScriptedPrinter printer;
    client.openWithUrl(printer.url());

    WAIT_COMPARE(trace.lines(), QStringList{connectedLine});
}

void TestLifecycle::closeWhileUnconnectedTurnsTheNextDropIntoPauseSuccess()
{
    zytest::LogCapture log;
    ZySslEchoClient client{QUrl(zytest::deadUrl())};
    zytest::SignalTrace trace(client);
    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    ScriptedPrinter printer;

    client.close();
    QCOMPARE(trace.lines(), QStringList());
    for (const QString &ending : {pauseSuccessLine, disconnectedLine}) {
        client.openWithUrl(printer.url());
        WAIT_COMPARE(trace.lines(), QStringList{connectedLine});
        WAIT_VERIFY(printer.peer());
        printer.drop();
        WAIT_COMPARE(trace.lines(), (QStringList{connectedLine, ending}));
        trace.clear();
    }
}

void TestLifecycle::canBeDestroyedWhileConnecting()
{
    ScriptedPrinter printer;
    {
        const ZySslEchoClient client(printer.url());
        QCOMPARE(client.socketConnectStatus(), QAbstractSocket::ConnectingState);
    }
    Session session;
    QVERIFY(session.open());
}

ZY_TEST(TestLifecycle)

#include "tst_lifecycle.moc"
