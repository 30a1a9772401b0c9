// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The cutting proxy itself: what other tests lean on has to hold.

#include "cuttingproxy.h"
#include "modelfiles.h"
#include "testprogram.h"
#include "waiting.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using zytest::CuttingProxy;

class TestCuttingProxy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forwardsBothWays();
    void endsTheOtherHalfWithTheFirst();
    void cutsAfterExactlyTheBytesAsked_data();
    void cutsAfterExactlyTheBytesAsked();
    void connectsAgainAfterACut();
    void keepsBytesWhileFrozen();
    void forwardsInPieces();
    void limitsTheThroughput();
};

namespace
{

/// A plain TCP connection through a proxy, both ends in hand.
struct Line {
    QTcpServer server;
    std::unique_ptr<CuttingProxy> proxy;
    QTcpSocket client;
    std::unique_ptr<QTcpSocket> printer;

    Line()
    {
        server.listen(QHostAddress::LocalHost);
        proxy = std::make_unique<CuttingProxy>(server.serverPort());
    }

    bool open()
    {
        client.connectToHost(QHostAddress(QHostAddress::LocalHost),
                             static_cast<quint16>(proxy->url().port()));
        const bool isOpen = zytest::waitUntil([this] {
            return client.state() == QAbstractSocket::ConnectedState
                && server.hasPendingConnections();
        });
        printer.reset(server.nextPendingConnection());
        return isOpen;
    }
};

QByteArray receive(QTcpSocket &socket, qint64 count)
{
    zytest::waitUntil([&] { return socket.bytesAvailable() >= count; });
    return socket.readAll();
}

bool waitForEnd(QTcpSocket &socket)
{
    return zytest::waitUntil([&] { return socket.state() == QAbstractSocket::UnconnectedState; });
}

} // namespace

void TestCuttingProxy::forwardsBothWays()
{
    const QByteArray up = zytest::randomBytes(3 * 1024 * 1024 + 7);
    const QByteArray down = zytest::randomBytes(1024 * 1024 + 3, 2);
    Line line;
    QVERIFY(line.open());

    line.client.write(up);
    line.printer->write(down);

    QVERIFY(receive(*line.printer, up.size()) == up);
    QVERIFY(receive(line.client, down.size()) == down);
    QCOMPARE(line.proxy->forwarded(CuttingProxy::ToPrinter), qint64(up.size()));
    QCOMPARE(line.proxy->forwarded(CuttingProxy::ToClient), qint64(down.size()));
}

void TestCuttingProxy::endsTheOtherHalfWithTheFirst()
{
    Line line;
    QVERIFY(line.open());

    line.client.write("last words");
    line.client.disconnectFromHost();

    QVERIFY(waitForEnd(*line.printer));
    QCOMPARE(line.printer->readAll(), QByteArray("last words"));
    QCOMPARE(line.proxy->cutCount(), 0);
}

void TestCuttingProxy::cutsAfterExactlyTheBytesAsked_data()
{
    QTest::addColumn<int>("direction");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("isReset");

    QTest::newRow("to the printer") << int(CuttingProxy::ToPrinter) << 70000 << false;
    QTest::newRow("to the client") << int(CuttingProxy::ToClient) << 70000 << false;
    QTest::newRow("after one byte") << int(CuttingProxy::ToPrinter) << 1 << false;
    QTest::newRow("before the first byte") << int(CuttingProxy::ToPrinter) << 0 << false;
    QTest::newRow("by a reset, to the printer") << int(CuttingProxy::ToPrinter) << 70000 << true;
    QTest::newRow("by a reset, to the client") << int(CuttingProxy::ToClient) << 0 << true;
}

void TestCuttingProxy::cutsAfterExactlyTheBytesAsked()
{
    QFETCH(int, direction);
    QFETCH(int, bytes);
    QFETCH(bool, isReset);
    const QByteArray sent = zytest::randomBytes(200000);
    Line line;
    QVERIFY(line.open());
    QTcpSocket &from = direction == CuttingProxy::ToPrinter ? line.client : *line.printer;
    QTcpSocket &to = direction == CuttingProxy::ToPrinter ? *line.printer : line.client;

    line.proxy->cutAfter(CuttingProxy::Direction(direction), bytes,
                         isReset ? CuttingProxy::Ending::Reset : CuttingProxy::Ending::Close);
    from.write(sent);

    QVERIFY(waitForEnd(from));
    QVERIFY(waitForEnd(to));
    QCOMPARE(line.proxy->cutCount(), 1);
    QCOMPARE(line.proxy->forwarded(CuttingProxy::Direction(direction)), qint64(bytes));
    const QByteArray arrived = to.readAll();
    if (!isReset)
        QCOMPARE(arrived.size(), bytes);
    QVERIFY(sent.startsWith(arrived));
}

void TestCuttingProxy::connectsAgainAfterACut()
{
    Line line;
    QVERIFY(line.open());
    line.proxy->cutAfter(CuttingProxy::ToPrinter, 1);
    line.client.write("abc");
    QVERIFY(waitForEnd(line.client));

    QVERIFY(line.open());
    line.client.write("abc");

    QCOMPARE(receive(*line.printer, 3), QByteArray("abc"));
    QCOMPARE(line.proxy->connectionCount(), 2);
    QCOMPARE(line.proxy->cutCount(), 1);
}

void TestCuttingProxy::keepsBytesWhileFrozen()
{
    Line line;
    QVERIFY(line.open());

    line.proxy->freeze();
    line.client.write("abc");
    QVERIFY(line.client.waitForBytesWritten(zytest::patience));
    zytest::spinOnce();
    QCOMPARE(line.printer->bytesAvailable(), qint64(0));
    QCOMPARE(line.proxy->forwarded(CuttingProxy::ToPrinter), qint64(0));

    line.proxy->thaw();
    QCOMPARE(receive(*line.printer, 3), QByteArray("abc"));
}

void TestCuttingProxy::forwardsInPieces()
{
    const QByteArray sent = zytest::randomBytes(300);
    Line line;
    QVERIFY(line.open());
    QByteArray arrived;
    qsizetype largest = 0;
    connect(line.printer.get(), &QTcpSocket::readyRead, this, [&] {
        const QByteArray piece = line.printer->readAll();
        largest = std::max<qsizetype>(largest, piece.size());
        arrived += piece;
    });

    line.proxy->setPieceSize(CuttingProxy::ToPrinter, 1);
    line.client.write(sent);

    QVERIFY(zytest::waitUntil([&] { return arrived.size() >= sent.size(); }));
    QCOMPARE(arrived, sent);
    // Two pieces may meet in the receiver's buffer, but never most of them.
    QVERIFY2(largest < 100, qPrintable(QString::number(largest)));
}

void TestCuttingProxy::limitsTheThroughput()
{
    const QByteArray sent = zytest::randomBytes(100000);
    Line line;
    QVERIFY(line.open());
    QElapsedTimer clock;

    line.proxy->setThroughput(400000);
    clock.start();
    line.client.write(sent);

    QCOMPARE(receive(*line.printer, sent.size()), sent);
    QVERIFY2(clock.elapsed() >= 200, qPrintable(QString::number(clock.elapsed())));
}

ZY_TEST(TestCuttingProxy)

#include "tst_cuttingproxy.moc"
