// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// When a disconnect is reported: with the event that brings it, unless messages wait before it.

#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"
#include "watchfulapplication.h"

#include <QTimer>

#include <functional>

using zytest::RawPrinter;
using Session = zytest::Session<RawPrinter>;
using Ending = std::function<void(Session &)>;

Q_DECLARE_METATYPE(Ending)

class TestDisconnects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportsADisconnectInTheEventThatBringsIt_data();
    void reportsADisconnectInTheEventThatBringsIt();
    void reportsADisconnectInsideTheSlotForTheClosingState();
    void reportsADisconnectAfterTheMessagesBeforeIt();
    void closesInsideTheSlotForConnected();
    void opensAgainInsideCloseAfterAReset();
    void keepsTheConnectionOpenedInANestedLoop_data();
    void keepsTheConnectionOpenedInANestedLoop();
    void opensAgainInALoopNestedInConnected();
    void diesInALoopNestedInDisconnected_data();
    void diesInALoopNestedInDisconnected();

private:
    static void addPeerEndings();
};

namespace
{

int disconnects(const Session &session)
{
    return session.trace.count("disconnected"_s);
}

bool isUnconnected(const Session &session)
{
    return session.client.socketConnectStatus() == QAbstractSocket::UnconnectedState;
}

} // namespace

void TestDisconnects::addPeerEndings()
{
    QTest::addColumn<Ending>("ending");
    QTest::newRow("a close frame")
        << Ending([](Session &session) { session.printer.write(RawPrinter::closeFrame(1000)); });
    QTest::newRow("a close frame, and the end of the stream") << Ending([](Session &session) {
        session.printer.write(RawPrinter::closeFrame(1001));
        session.printer.drop();
    });
    QTest::newRow("a close frame, and a reset") << Ending([](Session &session) {
        session.printer.write(RawPrinter::closeFrame(1000));
        session.printer.reset();
    });
    QTest::newRow("a frame that is none")
        << Ending([](Session &session) { session.printer.write("\xff\xff\xff"); });
    QTest::newRow("the end of the stream")
        << Ending([](Session &session) { session.printer.drop(); });
    QTest::newRow("a reset") << Ending([](Session &session) { session.printer.reset(); });
    QTest::newRow("a reset, noticed on sending") << Ending([](Session &session) {
        session.printer.reset();
        session.client.versionCheckCmd();
    });
}

void TestDisconnects::reportsADisconnectInTheEventThatBringsIt_data()
{
    addPeerEndings();
}

void TestDisconnects::reportsADisconnectInTheEventThatBringsIt()
{
    QFETCH(Ending, ending);
    Session session;
    QVERIFY(session.open());
    int eventsThatKeptItBack = 0;
    const zytest::AfterEachEvent check([&] {
        if (isUnconnected(session) && disconnects(session) == 0)
            ++eventsThatKeptItBack;
    });
    bool isStateRight = false;
    connect(&session.client, &ZySslEchoClient::disconnected, this,
            [&] { isStateRight = isUnconnected(session); });

    ending(session);

    WAIT_COMPARE(session.trace.names(), QStringList{"disconnected"_s});
    QCOMPARE(eventsThatKeptItBack, 0);
    QVERIFY(isStateRight);
    zytest::spinOnce();
    QCOMPARE(disconnects(session), 1);
}

void TestDisconnects::reportsADisconnectInsideTheSlotForTheClosingState()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(session.invoke("onStateChanged",
                           Q_ARG(QAbstractSocket::SocketState, QAbstractSocket::ClosingState)));

    QVERIFY(isUnconnected(session));
    QCOMPARE(session.trace.lines(), QStringList{"disconnected()"_s});
}

void TestDisconnects::reportsADisconnectAfterTheMessagesBeforeIt()
{
    Session session;
    QVERIFY(session.open());
    int disconnectsMeanwhile = -1;
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this, [&] {
        if (session.trace.lines().size() == 1)
            disconnectsMeanwhile = disconnects(session);
    });

    session.printer.write(RawPrinter::textFrame("{}"_s) + RawPrinter::textFrame("{}"_s)
                          + RawPrinter::closeFrame(1000));

    WAIT_COMPARE(disconnects(session), 1);
    QCOMPARE(disconnectsMeanwhile, 0);
    QCOMPARE(session.trace.names(),
             (QStringList{"jsonMessageReceived"_s, "jsonMessageReceived"_s, "disconnected"_s}));
}

void TestDisconnects::closesInsideTheSlotForConnected()
{
    Session session;
    QStringList namesAfterClose;
    connect(&session.client, &ZySslEchoClient::connected, this, [&] {
        session.client.close();
        namesAfterClose = session.trace.names();
    });

    WAIT_COMPARE(namesAfterClose, (QStringList{"connected"_s, "pauseSuccess"_s}));
    QVERIFY(isUnconnected(session));
}

void TestDisconnects::opensAgainInsideCloseAfterAReset()
{
    Session session;
    QVERIFY(session.open());
    connect(&session.client, &ZySslEchoClient::pauseSuccess, this,
            [&] { session.client.openWithUrl(session.printer.url()); });

    session.printer.reset();
    session.client.close(); // Qt notices the reset in there

    QCOMPARE(session.trace.names(), QStringList{"pauseSuccess"_s});
    WAIT_COMPARE(session.trace.count("connected"_s), 1);
    WAIT_VERIFY(session.printer.isPeerConnected());
    session.printer.write(RawPrinter::textFrame("{}"_s));
    WAIT_COMPARE(session.trace.names(),
                 (QStringList{"pauseSuccess"_s, "connected"_s, "jsonMessageReceived"_s}));
}

void TestDisconnects::keepsTheConnectionOpenedInANestedLoop_data()
{
    addPeerEndings();
}

void TestDisconnects::keepsTheConnectionOpenedInANestedLoop()
{
    QFETCH(Ending, ending);
    Session session;
    QVERIFY(session.open());
    const QByteArray frame = RawPrinter::textFrame(R"({"version":"1"})"_s);
    connect(&session.client, &ZySslEchoClient::disconnected, this, [&] {
        QTimer::singleShot(0, &session.client,
                           [&] { session.client.openWithUrl(session.printer.url()); });
        const bool isOpen = zytest::waitUntil([&] {
            return session.printer.connectionCount() == 2 && session.printer.isPeerConnected()
                && session.trace.count("connected"_s) == 1;
        });
        if (!isOpen)
            return;
        // Half a frame has been read when the slot returns.
        session.printer.write(frame.left(9));
        zytest::spinOnce();
    });

    ending(session);

    WAIT_VERIFY(session.trace.count("connected"_s) == 1);
    zytest::spinOnce();
    session.printer.write(frame.mid(9));
    WAIT_COMPARE(
        session.trace.names(),
        (QStringList{"disconnected"_s, "connected"_s, "checkVersion"_s, "jsonMessageReceived"_s}));
    QCOMPARE(session.printer.connectionCount(), 2);
}

void TestDisconnects::opensAgainInALoopNestedInConnected()
{
    RawPrinter printer;
    ZySslEchoClient client(printer.url());
    int connects = 0;
    connect(&client, &ZySslEchoClient::connected, this, [&] {
        if (++connects > 1)
            return;
        QTimer::singleShot(0, &client, [&] { client.openWithUrl(printer.url()); });
        zytest::waitUntil([&] { return connects == 2; });
        zytest::spinOnce();
    });

    WAIT_COMPARE(connects, 2);
    WAIT_COMPARE(printer.connectionCount(), 2);
    QCOMPARE(client.socketConnectStatus(), QAbstractSocket::ConnectedState);
}

void TestDisconnects::diesInALoopNestedInDisconnected_data()
{
    addPeerEndings();
}

void TestDisconnects::diesInALoopNestedInDisconnected()
{
    QFETCH(Ending, ending);
    Session session;
    QVERIFY(session.open());
    auto *client = new ZySslEchoClient(session.printer.url());
    const QPointer<ZySslEchoClient> alive(client);
    WAIT_COMPARE(session.printer.connectionCount(), 2);
    WAIT_COMPARE(client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    WAIT_VERIFY(session.printer.isPeerConnected());
    connect(client, &ZySslEchoClient::disconnected, this, [&] {
        client->openWithUrl(session.printer.url());
        QTimer::singleShot(0, client, [client] { delete client; });
        zytest::waitUntil([&] { return !alive; });
        zytest::spinOnce();
    });

    ending(session);

    WAIT_VERIFY(!alive);
    zytest::spinOnce();
}

ZY_TEST(TestDisconnects)

#include "tst_disconnects.moc"
