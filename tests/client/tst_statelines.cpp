// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The log lines of the socket's state: their place among the messages, and at the client's end.

#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <memory>

using zytest::RawPrinter;
using Session = zytest::Session<RawPrinter>;

class TestStateLines : public QObject
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

QString stateLine(const char *state)
{
    return "onStateChanged(QAbstractSocket::SocketState state) = QAbstractSocket::"_s
        + QString::fromUtf8(state);
}

const QStringList endingLines{stateLine("ClosingState"), stateLine("UnconnectedState")};

const QString checkData = R"({"checkstate":1,"cmd":"CHECK_DATA","key":"k"})"_s;
const QStringList checkDataLines{"check_data key = \"k\""_s, "check_data checkstate = 1"_s};

} // namespace

void TestStateLines::standAfterTheMessagesBeforeThem()
{
    Session session;
    QVERIFY(session.open());

    session.printer.write(RawPrinter::textFrame(checkData) + RawPrinter::textFrame(checkData)
                          + RawPrinter::closeFrame(1000));

    WAIT_COMPARE(session.trace.count("disconnected"_s), 1);
    QCOMPARE(session.logLines(), checkDataLines + checkDataLines + endingLines);
    WAIT_COMPARE(session.printer.closeCodes(), QVector<int>{1000});
}

void TestStateLines::standAfterTheMessagesThatWaitWhenTheSlotIsInvoked()
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

    WAIT_COMPARE(session.trace.count("disconnected"_s), 1);
    QCOMPARE(linesInside, checkDataLines);
    // The close itself does not wait.
    QCOMPARE(stateInside, QAbstractSocket::UnconnectedState);
    QCOMPARE(session.logLines(),
             checkDataLines + checkDataLines + QStringList{stateLine("ClosingState")}
                 + endingLines);
}

void TestStateLines::areWrittenAtOnceWhenNothingWaits()
{
    Session session;
    QVERIFY(session.open());

    QVERIFY(session.invoke("onStateChanged",
                           Q_ARG(QAbstractSocket::SocketState, QAbstractSocket::ClosingState)));

    QCOMPARE(session.logLines(), QStringList{stateLine("ClosingState")} + endingLines);
}

void TestStateLines::areWrittenWhenAConnectedClientIsDestroyed_data()
{
    QTest::addColumn<int>("bytesOnTheirWay");
    QTest::newRow("nothing on its way") << 0;
    // Far more than the kernel takes at once, so that Qt cannot close before they are gone.
    QTest::newRow("a long message on its way") << (24 << 20);
}

void TestStateLines::areWrittenWhenAConnectedClientIsDestroyed()
{
    QFETCH(int, bytesOnTheirWay);
    RawPrinter printer;
    auto client = std::make_unique<ZySslEchoClient>(printer.url());
    WAIT_VERIFY(printer.isPeerConnected());
    WAIT_COMPARE(client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    if (bytesOnTheirWay > 0)
        client->sendJsonMessage({{"filler"_s, QString(bytesOnTheirWay, QLatin1Char('x'))}});
    const zytest::LogCapture log;

    client.reset();

    QCOMPARE(log.texts("zywebsocket.client"_s), endingLines);
    WAIT_VERIFY(!printer.isPeerConnected());
    QCOMPARE(log.texts("zywebsocket.client"_s), endingLines);
}

void TestStateLines::areWrittenWhenTheClientIsDestroyedInASlotOfAMessageBeforeThem()
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
    QCOMPARE(log.texts("zywebsocket.client"_s), checkDataLines + endingLines);
}

void TestStateLines::areWrittenWhenAClientIsDestroyedWhileItConnects()
{
    RawPrinter printer;
    const zytest::LogCapture log;
    {
        const ZySslEchoClient client(printer.url());
    }
    QCOMPARE(log.texts("zywebsocket.client"_s), QStringList{stateLine("UnconnectedState")});
}

ZY_TEST(TestStateLines)

#include "tst_statelines.moc"
