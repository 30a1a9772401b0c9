// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The log lines of the socket's state: their place among the messages, and at the client's end.

#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"

#include <memory>

using zytest::RawPrinter;
using Session = zytest::Session<RawPrinter>;

class StateLinesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standAfterTheMessagesBeforeThem();
    void standAfterTheMessagesThatWaitWhenTheSlotIsInvoked();
    void areWrittenAtOnceWhenNothingWaits();
    void areWrittenWhenAConnectedClientIsDestroyed_data();
    void areWrittenWhenAConnectedClientIsDestroyed();
    void areWrittenWhenTheClientIsDestroyedInASlotOfAMessageBeforeThem();
    void areWrittenWhenAClientIsDestroyedWhileItConnects();
};

namespace
{

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

QString stateLine(const char *state)
{
    return s("onStateChanged(QAbstractSocket::SocketState state) = QAbstractSocket::") + s(state);
}

const QStringList endingLines{stateLine("ClosingState"), stateLine("UnconnectedState")};

const QString checkData = s(R"({"checkstate":1,"cmd":"CHECK_DATA","key":"k"})");
const QStringList checkDataLines{s("check_data key = \"k\""), s("check_data checkstate = 1")};

} // namespace

void StateLinesTest::standAfterTheMessagesBeforeThem()
{
    Session session;
    QVERIFY(session.open());

    session.printer.write(RawPrinter::textFrame(checkData) + RawPrinter::textFrame(checkData)
                          + RawPrinter::closeFrame(1000));

    WAIT_COMPARE(session.trace.count(s("disconnected")), 1);
    QCOMPARE(session.logLines(), checkDataLines + checkDataLines + endingLines);
    WAIT_COMPARE(session.printer.closeCodes(), QVector<int>{1000});
}

void StateLinesTest::standAfterTheMessagesThatWaitWhenTheSlotIsInvoked()
{
    Session session;
    QVERIFY(session.open());
    // Inside the first message's slot the second one waits.
    QStringList linesInside;
    auto stateInside = QAbstractSocket::ConnectedState;
    const auto closing = connect(&session.client, &ZySslEchoClient::finish, this, [&] {
        session.client.disconnect(this);
        session.invoke("onStateChanged",
                       Q_ARG(QAbstractSocket::SocketState, QAbstractSocket::ClosingState));
        linesInside = session.logLines();
        stateInside = session.client.socketConnectStatus();
    });

    session.printer.write(RawPrinter::textFrame(checkData) + RawPrinter::textFrame(checkData));

    WAIT_COMPARE(session.trace.count(s("disconnected")), 1);
    QCOMPARE(linesInside, checkDataLines);
    // The close itself does not wait.
    QCOMPARE(stateInside, QAbstractSocket::UnconnectedState);
    QCOMPARE(session.logLines(),
             checkDataLines + checkDataLines + QStringList{stateLine("ClosingState")}
                 + endingLines);
}

void StateLinesTest::areWrittenAtOnceWhenNothingWaits()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(session.invoke("onStateChanged",
                           Q_ARG(QAbstractSocket::SocketState, QAbstractSocket::ClosingState)));

    QCOMPARE(session.logLines(), QStringList{stateLine("ClosingState")} + endingLines);
}

void StateLinesTest::areWrittenWhenAConnectedClientIsDestroyed_data()
{
    QTest::addColumn<int>("bytesOnTheirWay");
    QTest::newRow("nothing on its way") << 0;
    // Far more than the kernel takes at once, so that Qt cannot close before they are gone.
    QTest::newRow("a long message on its way") << (24 << 20);
}

void StateLinesTest::areWrittenWhenAConnectedClientIsDestroyed()
{
    QFETCH(int, bytesOnTheirWay);
    RawPrinter printer;
    auto client = std::make_unique<ZySslEchoClient>(printer.url());
    WAIT_VERIFY(printer.isPeerConnected());
    WAIT_COMPARE(client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    if (bytesOnTheirWay > 0)
        client->sendJsonMessage({{s("filler"), QString(bytesOnTheirWay, QLatin1Char('x'))}});
    const zytest::LogCapture log;

    client.reset();

    QCOMPARE(log.texts(s("zywebsocket.client")), endingLines);
    WAIT_VERIFY(!printer.isPeerConnected());
    QCOMPARE(log.texts(s("zywebsocket.client")), endingLines);
}

void StateLinesTest::areWrittenWhenTheClientIsDestroyedInASlotOfAMessageBeforeThem()
{
    RawPrinter printer;
    auto *client = new ZySslEchoClient(printer.url());
    const QPointer<ZySslEchoClient> alive(client);
    WAIT_VERIFY(printer.isPeerConnected());
    WAIT_COMPARE(client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    const zytest::LogCapture log;
    connect(client, &ZySslEchoClient::finish, this, [client] { delete client; });

    printer.write(RawPrinter::textFrame(checkData) + RawPrinter::textFrame(checkData)
                  + RawPrinter::closeFrame(1000));

    WAIT_VERIFY(!alive);
    // The message that still waited is gone with the client.
    QCOMPARE(log.texts(s("zywebsocket.client")), checkDataLines + endingLines);
}

void StateLinesTest::areWrittenWhenAClientIsDestroyedWhileItConnects()
{
    RawPrinter printer;
    const zytest::LogCapture log;
    {
        const ZySslEchoClient client(printer.url());
    }
    QCOMPARE(log.texts(s("zywebsocket.client")), QStringList{stateLine("UnconnectedState")});
}

ZY_TEST(StateLinesTest)

#include "tst_statelines.moc"
