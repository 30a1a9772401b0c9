// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A sender that is to leave some of the line to others.

#include "sending.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QElapsedTimer>

using namespace zytest;

class TestRateLimit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesAsLongAsTheLimitWants_data();
    void takesAsLongAsTheLimitWants();
    void restsNotAtAllBelowTheLimit();
    void isNotStalledWhileItRests();
    void cancelsWhileItRests();
    void mayBeDeletedWhileItRests();
};

namespace
{

QUrl urlOf(const TestPrinter &printer)
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port()));
}

ZySendOptions limitedTo(qint64 bytesPerSecond, int stallTimeout = patience)
{
    ZySendOptions options = impatient(stallTimeout);
    options.setRateLimit(bytesPerSecond);
    return options;
}

} // namespace

void TestRateLimit::takesAsLongAsTheLimitWants_data()
{
    QTest::addColumn<int>("window");
    QTest::newRow("one chunk under way") << 1;
    QTest::newRow("two chunks under way") << 2;
}

void TestRateLimit::takesAsLongAsTheLimitWants()
{
    QFETCH(int, window);
    ZyServerOptions options;
    options.setWindow(window);
    TestPrinter printer(options);
    const int chunks = 3 + window; // the last ones under way bring no rest
    Sending sending(urlOf(printer), randomBytes(chunks * chunkBytes), limitedTo(4 * chunkBytes));
    QElapsedTimer time;
    time.start();
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QVERIFY2(time.elapsed() >= 750, qPrintable(QString::number(time.elapsed())));
}

void TestRateLimit::restsNotAtAllBelowTheLimit()
{
    TestPrinter printer;
    const qint64 unreachable = qint64(1) << 50;
    Sending sending(urlOf(printer), randomBytes(3 * chunkBytes), limitedTo(unreachable));
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
}

void TestRateLimit::isNotStalledWhileItRests()
{
    TestPrinter printer;
    Sending sending(urlOf(printer), randomBytes(2 * chunkBytes), limitedTo(chunkBytes / 2, 1000));
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QCOMPARE(sending.retrying.count(), 0);
}

void TestRateLimit::cancelsWhileItRests()
{
    TestPrinter printer;
    Sending sending(urlOf(printer), randomBytes(3 * chunkBytes), limitedTo(1));
    sending.sender->start();
    QVERIFY(waitUntil([&] { return sending.progress.count() == 1; }));
    sending.sender->cancel();
    QVERIFY(sending.waitForEnd());
    QCOMPARE(sending.result().ending(), ZySendResult::Ending::Cancelled);
    QVERIFY(sending.result().isPartDeleted());
}

void TestRateLimit::mayBeDeletedWhileItRests()
{
    TestPrinter printer;
    Sending sending(urlOf(printer), randomBytes(3 * chunkBytes), limitedTo(1));
    sending.sender->start();
    QVERIFY(waitUntil([&] { return sending.progress.count() == 1; }));
    sending.sender.reset();
    QVERIFY(printer.waitForConnections(0));
}

ZY_TEST(TestRateLimit)

#include "tst_ratelimit.moc"
