// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Why a connection failed or ended: the code and the words that the client passes on from Qt.

#include "rawprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QTcpServer>
#include <QTcpSocket>

using zytest::RawPrinter;
using Session = zytest::Session<RawPrinter>;

namespace
{

/// A server that knows no WebSocket: reads a request, writes one answer, and may hang up.
class OtherServer
{
public:
    OtherServer(const QByteArray &answer, bool hangsUp)
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this, answer, hangsUp] {
            QTcpSocket *peer = m_server.nextPendingConnection();
            QObject::connect(peer, &QTcpSocket::readyRead, peer, [peer, answer, hangsUp] {
                peer->readAll();
                peer->write(answer);
                if (hangsUp)
                    peer->disconnectFromHost();
            });
        });
    }

    QUrl url(const QString &scheme) const
    {
        return QUrl(QStringLiteral("%1://127.0.0.1:%2").arg(scheme).arg(m_server.serverPort()));
    }

private:
    QTcpServer m_server;
};

const QByteArray notFound = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";

} // namespace

class TestSocketErrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsNoErrorWhileAllIsWell();
    void reportsARefusedConnection();
    void reportsAnUnknownHost();
    void reportsAnInvalidUrl();
    void reportsAServerOfAnotherKindThatHangsUp_data();
    void reportsAServerOfAnotherKindThatHangsUp();
    void aServerOfAnotherKindThatWaitsLeavesTheAttemptOpen();
    void reportsHowAConnectionEnded();
    void forgetsTheCodeButNotTheHandshakesWords();
};

void TestSocketErrors::knowsNoErrorWhileAllIsWell()
{
    Session session;
    QCOMPARE(session.client.socketError(), QAbstractSocket::UnknownSocketError);
    QVERIFY(session.open());
    QCOMPARE(session.client.socketError(), QAbstractSocket::UnknownSocketError);
    session.client.close();
    QCOMPARE(session.client.socketError(), QAbstractSocket::UnknownSocketError);
}

void TestSocketErrors::reportsARefusedConnection()
{
    QTcpServer listener;
    QVERIFY(listener.listen(QHostAddress::LocalHost));
    const QUrl url(QStringLiteral("ws://127.0.0.1:%1").arg(listener.serverPort()));
    listener.close();
    const ZySslEchoClient client(url);

    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    QCOMPARE(client.socketError(), QAbstractSocket::ConnectionRefusedError);
    QCOMPARE(client.socketErrorText(), "Connection refused"_s);
}

void TestSocketErrors::reportsAnUnknownHost()
{
    // No name server is asked about a number that is no address.
    const ZySslEchoClient client(QUrl("ws://256.256.256.256:1"_s));

    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    QCOMPARE(client.socketError(), QAbstractSocket::HostNotFoundError);
    QCOMPARE(client.socketErrorText(), "Host not found"_s);
}

void TestSocketErrors::reportsAnInvalidUrl()
{
    const ZySslEchoClient client{QUrl()};
    QCOMPARE(client.socketError(), QAbstractSocket::UnknownSocketError);
    QCOMPARE(client.socketErrorText(), "Invalid URL."_s);
}

void TestSocketErrors::reportsAServerOfAnotherKindThatHangsUp_data()
{
    QTest::addColumn<QString>("scheme");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QAbstractSocket::SocketError>("error");
    QTest::addColumn<QString>("words");
    const auto closed = QAbstractSocket::RemoteHostClosedError;
    QTest::newRow("silent") << "ws"_s << QByteArray() << closed
                            << "The remote host closed the connection"_s;
    QTest::newRow("of HTTP") << "ws"_s << notFound << closed << "404 (Not Found)"_s;
    // Qt 6 forgets what it thought of the answer when the server hangs up.
    QTest::newRow("of something else")
        << "ws"_s << QByteArray("220 ready\r\n") << closed
        << QString::fromUtf8(QT_VERSION_MAJOR < 6 ? "Invalid statusline in response: 220 ready"
                                                  : "The remote host closed the connection");
    QTest::newRow("without TLS") << "wss"_s << notFound << QAbstractSocket::SslHandshakeFailedError
                                 << "Error during SSL handshake"_s;
}

void TestSocketErrors::reportsAServerOfAnotherKindThatHangsUp()
{
    QFETCH(QString, scheme);
    QFETCH(QByteArray, answer);
    QFETCH(QAbstractSocket::SocketError, error);
    QFETCH(QString, words);
    const OtherServer server(answer, true);
    const ZySslEchoClient client(server.url(scheme));

    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::UnconnectedState);
    QCOMPARE(client.socketError(), error);
    QVERIFY2(client.socketErrorText().contains(words), qPrintable(client.socketErrorText()));
}

void TestSocketErrors::aServerOfAnotherKindThatWaitsLeavesTheAttemptOpen()
{
    const OtherServer server(notFound, false);
    const ZySslEchoClient client(server.url("ws"_s));

    // The words are all that shows: Qt neither ends the attempt nor sets a code.
    WAIT_VERIFY(client.socketErrorText().contains("404 (Not Found)"_s));
    QCOMPARE(client.socketError(), QAbstractSocket::UnknownSocketError);
    QCOMPARE(client.socketConnectStatus(), QAbstractSocket::ConnectingState);
}

void TestSocketErrors::reportsHowAConnectionEnded()
{
    Session session;
    QVERIFY(session.open());
    auto errorInside = QAbstractSocket::UnknownSocketError;
    connect(&session.client, &ZySslEchoClient::disconnected, this,
            [&] { errorInside = session.client.socketError(); });

    session.printer.drop();

    WAIT_COMPARE(session.trace.count("disconnected"_s), 1);
    QCOMPARE(errorInside, QAbstractSocket::RemoteHostClosedError);
}

void TestSocketErrors::forgetsTheCodeButNotTheHandshakesWords()
{
    const OtherServer server(notFound, true);
    ZySslEchoClient client(server.url("ws"_s));
    WAIT_COMPARE(client.socketError(), QAbstractSocket::RemoteHostClosedError);
    const QString words = client.socketErrorText();
    const RawPrinter printer;

    client.openWithUrl(printer.url());

    WAIT_COMPARE(client.socketConnectStatus(), QAbstractSocket::ConnectedState);
    QCOMPARE(client.socketError(), QAbstractSocket::UnknownSocketError);
    QCOMPARE(client.socketErrorText(), words);
}

ZY_TEST(TestSocketErrors)

#include "tst_socketerrors.moc"
