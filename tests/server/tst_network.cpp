// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Where the server listens, and what it says of its peers' transfers.

#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTest>

using namespace zytest;

using Transfer = ZyServerOptions::Transfer;

namespace
{

struct Note {
    Transfer what;
    QString name;
    QString peer;
};

} // namespace

class TestNetwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listensOnTheGivenAddressAlone_data();
    void listensOnTheGivenAddressAlone();
    void doesNotListenOnAForeignAddress();
    void namesTheFileAndThePeerOfATransfer();
};

void TestNetwork::listensOnTheGivenAddressAlone_data()
{
    QTest::addColumn<bool>("isHardened"); // which brings a listener of its own
    QTest::newRow("unprotected") << false;
    QTest::newRow("hardened") << true;
}

void TestNetwork::listensOnTheGivenAddressAlone()
{
    QFETCH(bool, isHardened);
    ZyServerOptions options = isHardened ? ZyServerOptions::hardened() : ZyServerOptions();
    QVERIFY(options.listenAddress().isNull());
    options.setListenAddress(QHostAddress(QStringLiteral("127.0.0.2")));
    const TestPrinter printer(options);
    QTcpSocket there;
    there.connectToHost(QStringLiteral("127.0.0.2"), printer.port());
    QVERIFY(there.waitForConnected(patience));
    QTcpSocket elsewhere;
    elsewhere.connectToHost(QStringLiteral("127.0.0.1"), printer.port());
    QVERIFY(!elsewhere.waitForConnected(patience));
    QCOMPARE(elsewhere.error(), QAbstractSocket::ConnectionRefusedError);
}

void TestNetwork::doesNotListenOnAForeignAddress()
{
    ZyServerOptions options;
    options.setListenAddress(QHostAddress(QStringLiteral("192.0.2.1"))); // of documentation
    const ZySslEchoServer server(0, {}, options);
    QVERIFY(!server.isListening());
}

void TestNetwork::namesTheFileAndThePeerOfATransfer()
{
    QVector<Note> notes;
    ZyServerOptions options;
    options.setTransferHandler([&](Transfer what, const QString &name, const QString &peer) {
        notes.append({what, name, peer});
    });
    const TestPrinter printer(options);
    RawPeer peer(printer.port());
    const QString address = QStringLiteral("127.0.0.1:%1").arg(peer.socket().localPort());
    const QByteArray offer = R"({"cmd":"START_FILE","filename":"a.zydlp","key":"1","offset":"0",)"
                             R"("size":"100"})";
    QVERIFY(!peer.ask(offer).isEmpty());
    QVERIFY(!peer.ask(R"({"cmd":"CANCEL_FILE"})").isEmpty());
    QVERIFY(!peer.ask(R"({"cmd":"CANCEL_FILE"})").isEmpty());
    QVERIFY(!peer.ask(offer).isEmpty());
    peer.abort();
    QVERIFY(printer.waitForConnections(0));
    const QVector<QPair<Transfer, QString>> expected{
        {Transfer::Accepted, QStringLiteral("a.zydlp")},
        {Transfer::Cancelled, QStringLiteral("a.zydlp")},
        {Transfer::Cancelled, QString()},
        {Transfer::Accepted, QStringLiteral("a.zydlp")},
        {Transfer::Interrupted, QStringLiteral("a.zydlp")}};
    QCOMPARE(notes.size(), expected.size());
    for (int i = 0; i < notes.size(); ++i) {
        QCOMPARE(notes[i].what, expected[i].first);
        QCOMPARE(notes[i].name, expected[i].second);
        QCOMPARE(notes[i].peer, address);
    }
}

ZY_TEST(TestNetwork)

#include "tst_network.moc"
