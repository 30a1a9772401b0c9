// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Other ways to end: refusals, a printer that breaks the protocol or cannot store, no connection,
// retries used up.

#include "cuttingproxy.h"
#include "scriptedprinter.h"
#include "sending.h"
#include "testprinter.h"
#include "testprogram.h"
#include "tlsidentity.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

using namespace zytest;
using ConnectionFault = ZySendResult::ConnectionFault;
using Ending = ZySendResult::Ending;
using Interruption = ZySendResult::Interruption;

Q_DECLARE_METATYPE(std::function<void(QTcpSocket *)>)

class TestSenderEndings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsRefusalsApart_data();
    void tellsRefusalsApart();
    void offersWithTheTokenThatItIsGiven();
    void tellsAFailedCheck();
    void takesNoOpinionForGood();
    void blamesThePrinterThatBreaksTheProtocol_data();
    void blamesThePrinterThatBreaksTheProtocol();
    void blamesThePrintersStorage_data();
    void blamesThePrintersStorage();
    void saysWhyThereIsNoConnection_data();
    void saysWhyThereIsNoConnection();
    void sendsNothingToAPrinterWhoseCertificateIsRefused_data();
    void sendsNothingToAPrinterWhoseCertificateIsRefused();
    void sendsToAPrinterWhoseCertificateIsPinned();
    void asksAPrinterNoMoreThatChangesItsCertificate();
    void givesUpConnectingAfterItsLimit();
    void givesUpAfterItsRetries_data();
    void givesUpAfterItsRetries();
};

namespace
{

QJsonObject withCode(QJsonObject message, int code)
{
    message.insert(QStringLiteral("errorcode"), code);
    return message;
}

ZyServerOptions encrypted(const TlsIdentity &identity)
{
    ZyServerOptions options;
    options.useTls(identity.certificate, identity.key);
    return options;
}

QUrl encryptedUrl(quint16 port)
{
    return QUrl(QStringLiteral("wss://127.0.0.1:%1").arg(port));
}

ZyTlsTrust pinned(const TlsIdentity &identity)
{
    ZyTlsTrust trust;
    trust.pin(identity.fingerprint());
    return trust;
}

} // namespace

void TestSenderEndings::tellsRefusalsApart_data()
{
    QTest::addColumn<int>("errorcode");
    QTest::addColumn<int>("wifistate");
    QTest::addColumn<Ending>("ending");
    QTest::newRow("receiving") << 1 << 3 << Ending::BusyReceiving;
    QTest::newRow("checking") << 1 << 4 << Ending::BusyChecking;
    QTest::newRow("unwilling") << 1 << 5 << Ending::Unwilling;
    QTest::newRow("token") << 4 << 6 << Ending::TokenRejected;
    QTest::newRow("no temporary file") << 2 << 0 << Ending::PrinterStorage;
    QTest::newRow("unknown code") << 77 << 0 << Ending::Unwilling;
}

void TestSenderEndings::tellsRefusalsApart()
{
    QFETCH(int, errorcode);
    QFETCH(int, wifistate);
    QFETCH(Ending, ending);
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&] {
        printer.send({{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                      {QStringLiteral("errorcode"), errorcode},
                      {QStringLiteral("wifistate"), wifistate}});
    });
    Sending sending(printer.url(), "abc");
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), ending);
    QVERIFY(sending.result().sentence().contains(QStringLiteral("part.bin")));
    QVERIFY(sending.result().sentence().contains(printer.url().toString()));
    QCOMPARE(sending.retrying.count(), 0);
}

void TestSenderEndings::offersWithTheTokenThatItIsGiven()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    ZySendOptions options = impatient();
    options.setToken(QStringLiteral("secret"));
    Sending withToken(printer.url(), "abc", options);
    QVERIFY(withToken.run());
    Sending without(printer.url(), "abc");
    QVERIFY(without.run());
    const auto offers = printer.messages(QStringLiteral("START_FILE"));
    QCOMPARE(offers.at(0).value(QStringLiteral("token")).toString(), QStringLiteral("secret"));
    QVERIFY(!offers.at(1).contains(QStringLiteral("token")));
}

void TestSenderEndings::tellsAFailedCheck()
{
    ScriptedPrinter printer;
    printer.answerTransfers({true, 0, 2, true});
    Sending sending(printer.url(), "abc");
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::CheckFailed);
    QCOMPARE(sending.result().checkState(), 2);
    QCOMPARE(sending.result().storedName(), QStringLiteral("part.bin"));
}

void TestSenderEndings::takesNoOpinionForGood()
{
    ScriptedPrinter printer;
    printer.answerTransfers({true, 0, 0, true});
    Sending sending(printer.url(), "abc");
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QCOMPARE(sending.result().checkState(), 0);
}

/// The first word says when the printer does what the rest says.
void TestSenderEndings::blamesThePrinterThatBreaksTheProtocol_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("answer");
    QTest::newRow("offset beyond the end") << qint64(4) << QString();
    QTest::newRow("offset at the end of all numbers")
        << std::numeric_limits<qint64>::max() << QString();
    QTest::newRow("negative offset") << qint64(-1) << QStringLiteral("complete");
    QTest::newRow("acknowledges another key") << qint64(0) << QStringLiteral("other key");
    QTest::newRow("acknowledges too much") << qint64(0) << QStringLiteral("too much");
    QTest::newRow("checks another file") << qint64(0) << QStringLiteral("other verdict");
    QTest::newRow("checks too early") << qint64(0) << QStringLiteral("early verdict");
    QTest::newRow("accepts another file") << qint64(0) << QStringLiteral("other acceptance");
}

void TestSenderEndings::blamesThePrinterThatBreaksTheProtocol()
{
    QFETCH(qint64, offset);
    QFETCH(QString, answer);
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        QJsonObject reply = startFileReply(objectIn(text), {true, offset, 1, true});
        if (answer == QStringLiteral("other acceptance"))
            reply.insert(QStringLiteral("key"), QStringLiteral("77"));
        printer.send(reply);
        if (answer == QStringLiteral("early verdict"))
            printer.send(checkDataReply(offeredKey(printer), 1));
    });
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        if (!printer.peer()) // the sender has had enough
            return;
        const QString other = QStringLiteral("77");
        printer.send(
            startDataReply(answer == QStringLiteral("other key") ? other : offeredKey(printer), 3,
                           answer == QStringLiteral("too much") ? 4 : 3));
        printer.send(checkDataReply(
            answer == QStringLiteral("other verdict") ? other : offeredKey(printer), 1));
    });
    Sending sending(printer.url(), "abc");
    QVERIFY(sending.run());
    QVERIFY2(sending.result().ending() == Ending::PrinterFault,
             qPrintable(sending.result().sentence()));
    QCOMPARE(sending.retrying.count(), 0);
}

void TestSenderEndings::blamesThePrintersStorage_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"error code", "short count", "count goes back", "drops the connection",
                            "closes with 1011"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestSenderEndings::blamesThePrintersStorage()
{
    QFETCH(QString, way);
    ScriptedPrinter printer;
    const qint64 size = 3 * chunkBytes;
    qint64 received = 0;
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        printer.send(startFileReply(objectIn(text), {true, received, 1, true}));
    });
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        const QString key = offeredKey(printer);
        if (received == 0) {
            received = chunkBytes;
            printer.send(startDataReply(key, size, received));
        } else if (way == QStringLiteral("error code")) {
            printer.send(withCode(startDataReply(key, size, received), 2));
        } else if (way == QStringLiteral("short count")) {
            printer.send(startDataReply(key, size, received + 1000));
        } else if (way == QStringLiteral("count goes back")) {
            printer.send(startDataReply(key, size, received - 1));
        } else if (way == QStringLiteral("drops the connection")) {
            printer.drop();
        } else {
            printer.close(static_cast<QWebSocketProtocol::CloseCode>(1011));
        }
    });
    Sending sending(printer.url(), compressibleBytes(static_cast<int>(size)));
    QVERIFY(sending.run());
    QVERIFY2(sending.result().ending() == Ending::PrinterStorage,
             qPrintable(sending.result().sentence()));
    QCOMPARE(sending.result().bytes(), qint64(chunkBytes));
}

void TestSenderEndings::saysWhyThereIsNoConnection_data()
{
    using Answer = std::function<void(QTcpSocket *)>;
    QTest::addColumn<QString>("address"); // %1: the port of the server that answers so
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<ConnectionFault>("fault");
    const auto send = [](const QByteArray &text) -> Answer {
        return [text](QTcpSocket *socket) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [socket, text] { socket->write(text); });
        };
    };
    const Answer none;
    const QString ws = QStringLiteral("ws://127.0.0.1:%1");
    QTest::newRow("refused") << QStringLiteral("ws://127.0.0.1:1") << none
                             << ConnectionFault::Refused;
    QTest::newRow("unknown host") << QStringLiteral("ws://printer.invalid:80") << none
                                  << ConnectionFault::UnknownHost;
    QTest::newRow("other scheme") << QStringLiteral("http://127.0.0.1:80") << none
                                  << ConnectionFault::BadAddress;
    QTest::newRow("no host") << QStringLiteral("ws:") << none << ConnectionFault::BadAddress;
    QTest::newRow("not found") << ws << send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n")
                               << ConnectionFault::NotAWebSocket;
    QTest::newRow("other protocol")
        << ws << send("220 mail ready\r\n\r\n") << ConnectionFault::NotAWebSocket;
    QTest::newRow("closes at once") << ws << Answer([](QTcpSocket *socket) { socket->close(); })
                                    << ConnectionFault::NotAWebSocket;
    QTest::newRow("no TLS") << QStringLiteral("wss://127.0.0.1:%1")
                            << send("HTTP/1.1 400 Bad Request\r\n\r\n") << ConnectionFault::Tls;
}

void TestSenderEndings::saysWhyThereIsNoConnection()
{
    QFETCH(QString, address);
    QFETCH(std::function<void(QTcpSocket *)>, answer);
    QFETCH(ConnectionFault, fault);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server,
            [&] { answer(server.nextPendingConnection()); });
    const QUrl url(address.contains(QLatin1Char('%')) ? address.arg(server.serverPort()) : address);
    Sending sending(url, "abc");
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::NoConnection);
    QCOMPARE(sending.result().connectionFault(), fault);
    QVERIFY(sending.result().sentence().contains(ZySendResult::text(fault)));
    QCOMPARE(sending.offered.count(), 0);
}

void TestSenderEndings::sendsNothingToAPrinterWhoseCertificateIsRefused_data()
{
    QTest::addColumn<bool>("isPinned");
    QTest::addColumn<ConnectionFault>("fault");
    QTest::addColumn<QString>("reason");
    QTest::newRow("unknown") << false << ConnectionFault::CertificateUntrusted
                             << QStringLiteral("certificate not trusted");
    QTest::newRow("another") << true << ConnectionFault::CertificateChanged
                             << QStringLiteral("certificate is not the expected one");
}

void TestSenderEndings::sendsNothingToAPrinterWhoseCertificateIsRefused()
{
    QFETCH(bool, isPinned);
    QFETCH(ConnectionFault, fault);
    QFETCH(QString, reason);
    TestPrinter printer(encrypted(TlsIdentity::localhost()));
    ZySendOptions options = impatient();
    if (isPinned)
        options.setTlsTrust(pinned(TlsIdentity::other()));
    Sending sending(encryptedUrl(printer.port()), "abc", options);
    QVERIFY(sending.run());
    const ZySendResult result = sending.result();
    QCOMPARE(result.ending(), Ending::NoConnection);
    QCOMPARE(result.connectionFault(), fault);
    QCOMPARE(result.refusedFingerprint(), TlsIdentity::localhost().fingerprint());
    QVERIFY2(result.sentence().contains(reason), qPrintable(result.sentence()));
    QVERIFY(result.sentence().contains(result.refusedFingerprint()));
    QVERIFY(printer.handles().isEmpty());
    QCOMPARE(sending.offered.count() + sending.retrying.count(), 0);
}

void TestSenderEndings::sendsToAPrinterWhoseCertificateIsPinned()
{
    TestPrinter printer(encrypted(TlsIdentity::localhost()));
    ZySendOptions options = impatient();
    options.setTlsTrust(pinned(TlsIdentity::localhost()));
    const QByteArray contents = randomBytes(3 * chunkBytes + 5);
    Sending sending(encryptedUrl(printer.port()), contents, options);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::Sent);
    QCOMPARE(sending.result().refusedFingerprint(), QString());
    QVERIFY(readFile(printer.path(QStringLiteral("part.bin"))) == contents);
}

void TestSenderEndings::asksAPrinterNoMoreThatChangesItsCertificate()
{
    auto printer = std::make_unique<TestPrinter>(encrypted(TlsIdentity::localhost()));
    const quint16 port = printer->port();
    ZySendOptions options = impatient();
    options.setTlsTrust(pinned(TlsIdentity::localhost()));
    Sending sending(encryptedUrl(port), randomBytes(20 * chunkBytes), options);
    const QTemporaryDir directory;
    std::unique_ptr<ZySslEchoServer> impostor;
    connect(sending.sender.get(), &ZyFileSender::progress, this, [&] {
        if (impostor)
            return;
        printer.reset();
        impostor = std::make_unique<ZySslEchoServer>(port, directory.path(),
                                                     encrypted(TlsIdentity::other()));
    });
    QVERIFY(sending.run());
    QVERIFY(impostor->isListening());
    QCOMPARE(sending.result().ending(), Ending::NoConnection);
    QCOMPARE(sending.result().connectionFault(), ConnectionFault::CertificateChanged);
    QCOMPARE(sending.result().refusedFingerprint(), TlsIdentity::other().fingerprint());
    QCOMPARE(sending.retrying.count(), 1);
}

void TestSenderEndings::givesUpConnectingAfterItsLimit()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    ZySendOptions options = impatient();
    options.setConnectTimeout(50);
    Sending sending(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(silent.serverPort())), "abc",
                    options);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::NoConnection);
    QCOMPARE(sending.result().connectionFault(), ConnectionFault::TimedOut);
}

void TestSenderEndings::givesUpAfterItsRetries_data()
{
    QTest::addColumn<int>("retries");
    QTest::newRow("none allowed") << 0;
    QTest::newRow("two allowed") << 2;
}

void TestSenderEndings::givesUpAfterItsRetries()
{
    QFETCH(int, retries);
    ScriptedPrinter printer;
    printer.answerTransfers();
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        printer.stopListening();
        printer.drop();
    });
    ZySendOptions options = impatient();
    options.setRetries(retries);
    Sending sending(printer.url(), compressibleBytes(2 * chunkBytes), options);
    QVERIFY(sending.run());
    QCOMPARE(sending.result().ending(), Ending::GaveUp);
    QCOMPARE(sending.result().interruption(),
             retries == 0 ? Interruption::ConnectionLost : Interruption::ConnectFailed);
    QCOMPARE(sending.result().connectionFault(),
             retries == 0 ? ConnectionFault::None : ConnectionFault::Refused);
    QCOMPARE(sending.retrying.count(), retries);
}

ZY_TEST(TestSenderEndings)
#include "tst_endings.moc"
