// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// When a disconnect is reported: with the event that brings it, unless messages wait before it.

#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"
#include "watchfulapplication.h"

#include <QTimer>

#include <functional>

using zytest::RawPrinter;
using Session = zytest::Session<RawPrinter>;
using Ending = std::function<void(Session &)>;

Q_DECLARE_METATYPE(Ending)

class DisconnectsTest : public QObject
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

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

int disconnects(const Session &session)
{
    return session.trace.count(s("disconnected"));
}

bool isUnconnected(const Session &session)
{
    return session.client.socketConnectStatus() == QAbstractSocket::UnconnectedState;
}

} // namespace

void DisconnectsTest::addPeerEndings()
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

void DisconnectsTest::reportsADisconnectInTheEventThatBringsIt_data()
{
    addPeerEndings();
}

void DisconnectsTest::reportsADisconnectInTheEventThatBringsIt()
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

    WAIT_COMPARE(session.trace.names(), QStringList{s("disconnected")});
    QCOMPARE(eventsThatKeptItBack, 0);
    QVERIFY(isStateRight);
    zytest::spinOnce();
    QCOMPARE(disconnects(session), 1);
}

void DisconnectsTest::reportsADisconnectInsideTheSlotForTheClosingState()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(session.invoke("onStateChanged",
                           Q_ARG(QAbstractSocket::SocketState, QAbstractSocket::ClosingState)));

    QVERIFY(isUnconnected(session));
    QCOMPARE(session.trace.lines(), QStringList{s("disconnected()")});
}

void DisconnectsTest::reportsADisconnectAfterTheMessagesBeforeIt()
{
    Session session;
    QVERIFY(session.open());
    int disconnectsMeanwhile = -1;
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this, [&] {
        if (session.trace.lines().size() == 1)
            disconnectsMeanwhile = disconnects(session);
    });

    session.printer.write(RawPrinter::textFrame(s("{}")) + RawPrinter::textFrame(s("{}"))
                          + RawPrinter::closeFrame(1000));

    WAIT_COMPARE(disconnects(session), 1);
    QCOMPARE(disconnectsMeanwhile, 0);
    QCOMPARE(session.trace.names(),
             (QStringList{s("jsonMessageReceived"), s("jsonMessageReceived"), s("disconnected")}));
}

void DisconnectsTest::closesInsideTheSlotForConnected()
{
    Session session;
    QStringList namesAfterClose;
    connect(&session.client, &ZySslEchoClient::connected, this, [&] {
        session.client.close();
        namesAfterClose = session.trace.names();
    });

    WAIT_COMPARE(namesAfterClose, (QStringList{s("connected"), s("pauseSuccess")}));
    QVERIFY(isUnconnected(session));
}

void DisconnectsTest::opensAgainInsideCloseAfterAReset()
{
    Session session;
    QVERIFY(session.open());
    connect(&session.client, &ZySslEchoClient::pauseSuccess, this,
            [&] { session.client.openWithUrl(session.printer.url()); });

    session.printer.reset();
    session.client.close(); // Qt notices the reset in there

    QCOMPARE(session.trace.names(), QStringList{s("pauseSuccess")});
    WAIT_COMPARE(session.trace.count(s("connected")), 1);
    WAIT_VERIFY(session.printer.isPeerConnected());
    session.printer.write(RawPrinter::textFrame(s("{}")));
    WAIT_COMPARE(session.trace.names(),
                 (QStringList{s("pauseSuccess"), s("connected"), s("jsonMessageReceived")}));
}

void DisconnectsTest::keepsTheConnectionOpenedInANestedLoop_data()
{
    addPeerEndings();
}

void DisconnectsTest::keepsTheConnectionOpenedInANestedLoop()
{
    QFETCH(Ending, ending);
    Session session;
    QVERIFY(session.open());
    const QByteArray frame = RawPrinter::textFrame(s(R"({"version":"1"})"));
    connect(&session.client, &ZySslEchoClient::disconnected, this, [&] {
        QTimer::singleShot(0, &session.client,
                           [&] { session.client.openWithUrl(session.printer.url()); });
        const bool isOpen = zytest::waitUntil([&] {
            return session.printer.connectionCount() == 2 && session.printer.isPeerConnected()
                && session.trace.count(s("connected")) == 1;
        });
        if (!isOpen)
            return;
        // Half a frame has been read when the slot returns.
        session.printer.write(frame.left(9));
        zytest::spinOnce();
    });

    ending(session);

    WAIT_VERIFY(session.trace.count(s("connected")) == 1);
    zytest::spinOnce();
    session.printer.write(frame.mid(9));
    WAIT_COMPARE(session.trace.names(),
                 (QStringList{s("disconnected"), s("connected"), s("checkVersion"),
                              s("jsonMessageReceived")}));
    QCOMPARE(session.printer.connectionCount(), 2);
}

void DisconnectsTest::opensAgainInALoopNestedInConnected()
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

void DisconnectsTest::diesInALoopNestedInDisconnected_data()
{
    addPeerEndings();
}

void DisconnectsTest::diesInALoopNestedInDisconnected()
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

ZY_TEST(DisconnectsTest)

#include "tst_disconnects.moc"
