// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The keep-alive: its ticks invoked one by one, since the library never starts the timer.

#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

using Session = zytest::Session<zytest::RawPrinter>;

class TestKeepAlive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pingsOnTheFirstTick();
    void pingsAgainAfterEachPong();
    void aPongResetsTheCount();
    void acceptsEveryCertificate();
    void answersAClosingStateWithACloseOfItsOwn();

    void aSilentPeerIsADisconnectOnTheFourthTick();
    void goesOnReportingASilentPeer();
    void neverReportsASilentPeerAfterClose();
    void leavesAnotherStateAlone_data();
    void leavesAnotherStateAlone();
};

namespace
{

bool tick(Session &session, int times = 1)
{
    bool isInvoked = true;
    for (int i = 0; i < times; ++i)
        isInvoked = session.invoke("trying") && isInvoked;
    return isInvoked;
}

bool pong(Session &session)
{
    return session.invoke("onPong", Q_ARG(qulonglong, 1), Q_ARG(QByteArray, QByteArray("other")));
}

bool enterState(Session &session, QAbstractSocket::SocketState state)
{
    return session.invoke("onStateChanged", Q_ARG(QAbstractSocket::SocketState, state));
}

} // namespace

void TestKeepAlive::pingsOnTheFirstTick()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(tick(session));

    WAIT_COMPARE(session.printer.pings(), QByteArrayList{"ping"});
    QCOMPARE(session.trace.lines(), QStringList());
    QCOMPARE(session.logLines(), QStringList());
}

void TestKeepAlive::pingsAgainAfterEachPong()
{
    Session session;
    QVERIFY(session.open());
    for (int pings = 1; pings <= 6; ++pings) {
        session.trace.clear();
        QVERIFY(tick(session));
        WAIT_COMPARE(session.printer.pings().size(), pings);
        // Once the message after the pong has come, so has the pong.
        session.printer.write(zytest::RawPrinter::textFrame("{}"_s));
        WAIT_COMPARE(session.trace.lines(), QStringList{"jsonMessageReceived({})"_s});
    }
}

void TestKeepAlive::aPongResetsTheCount()
{
    Session session;
    session.printer.setAnswersPings(false);
    QVERIFY(session.open());

    QVERIFY(tick(session, 3));
    QVERIFY(pong(session));
    QVERIFY(tick(session, 3));
    QCOMPARE(session.trace.lines(), QStringList());
    WAIT_COMPARE(session.printer.pings().size(), 2);

    QVERIFY(tick(session));
    QCOMPARE(session.trace.lines(), QStringList{"disconnected()"_s});
}

void TestKeepAlive::acceptsEveryCertificate()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(session.invoke("onSslErrors", Q_ARG(QList<QSslError>, {QSslError()})));

    QCOMPARE(session.logLines(), QStringList{"ssl Error!"_s});
    QCOMPARE(session.trace.lines(), QStringList());
}

void TestKeepAlive::answersAClosingStateWithACloseOfItsOwn()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(enterState(session, QAbstractSocket::ClosingState));

    WAIT_COMPARE(session.trace.lines(), QStringList{"disconnected()"_s});
    WAIT_COMPARE(session.printer.closeCodes(), QVector<int>{1000});
}

void TestKeepAlive::aSilentPeerIsADisconnectOnTheFourthTick()
{
    Session session;
    session.printer.setAnswersPings(false);
    QVERIFY(session.open());

    QVERIFY(tick(session, 3));
    QCOMPARE(session.trace.lines(), QStringList());
    QVERIFY(tick(session));
    QCOMPARE(session.trace.lines(), QStringList{"disconnected()"_s});

    // Only reported: the socket stays as it is, and nothing more than the one ping is sent.
    QCOMPARE(session.client.socketConnectStatus(), QAbstractSocket::ConnectedState);
    session.client.versionCheckCmd();
    WAIT_COMPARE(session.printer.texts().size(), 1);
    QCOMPARE(session.printer.pings().size(), 1);
    QCOMPARE(session.printer.connectionCount(), 1);
}

void TestKeepAlive::goesOnReportingASilentPeer()
{
    Session session;
    session.printer.setAnswersPings(false);
    QVERIFY(session.open());

    // The counters are not reset by the report.
    QVERIFY(tick(session, 6));

    QCOMPARE(session.trace.count("disconnected"_s), 3);
    QVERIFY(pong(session));
    QVERIFY(tick(session));
    WAIT_COMPARE(session.printer.pings().size(), 2);
    QCOMPARE(session.trace.count("disconnected"_s), 3);
}

void TestKeepAlive::neverReportsASilentPeerAfterClose()
{
    Session session;
    session.printer.setAnswersPings(false);
    QVERIFY(session.open());
    session.printer.drop();
    WAIT_COMPARE(session.trace.lines(), QStringList{"disconnected()"_s});
    session.client.close(); // while unconnected, so nothing clears the request to close

    QVERIFY(tick(session, 8));

    QCOMPARE(session.trace.lines(), QStringList{"disconnected()"_s});
}

void TestKeepAlive::leavesAnotherStateAlone_data()
{
    QTest::addColumn<QAbstractSocket::SocketState>("state");
    QTest::addColumn<QString>("name");
    QTest::newRow("unconnected") << QAbstractSocket::UnconnectedState << "UnconnectedState"_s;
    QTest::newRow("host lookup") << QAbstractSocket::HostLookupState << "HostLookupState"_s;
    QTest::newRow("connecting") << QAbstractSocket::ConnectingState << "ConnectingState"_s;
    QTest::newRow("connected") << QAbstractSocket::ConnectedState << "ConnectedState"_s;
    QTest::newRow("bound") << QAbstractSocket::BoundState << "BoundState"_s;
    QTest::newRow("listening") << QAbstractSocket::ListeningState << "ListeningState"_s;
}

void TestKeepAlive::leavesAnotherStateAlone()
{
    QFETCH(QAbstractSocket::SocketState, state);
    QFETCH(QString, name);
    Session session;
    QVERIFY(session.open());

    QVERIFY(enterState(session, state));

    QCOMPARE(session.logLines(),
             QStringList{"onStateChanged(QAbstractSocket::SocketState state) = QAbstractSocket::"_s
                         + name});
    QCOMPARE(session.client.socketConnectStatus(), QAbstractSocket::ConnectedState);
    QCOMPARE(session.trace.lines(), QStringList());
}

ZY_TEST(TestKeepAlive)

#include "tst_keepalive.moc"
