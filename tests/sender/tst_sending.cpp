// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Files that arrive: over a good link, a bad one, many at once, and without holding up the caller.

#include "cuttingproxy.h"
#include "scriptedprinter.h"
#include "sending.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QSemaphore>
#include <QThread>
#include <QTimer>

#include <vector>

using namespace zytest;
using Interruption = ZySendResult::Interruption;

class TestSending : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bringsAFileToThePrinter_data();
    void bringsAFileToThePrinter();
    void resumesWhereThePrinterStopped();
    void beginsAgainWhenThePrinterHasLostItsPart();
    void reportsTheNameOfTheFirstOffer();
    void arrivesHoweverOftenTheLinkIsCut_data();
    void arrivesHoweverOftenTheLinkIsCut();
    void connectsAgainWhenNothingBegins_data();
    void connectsAgainWhenNothingBegins();
    void waitsForAPrinterThatHasNotNoticedTheDrop();
    void waitsLongForAPrinterThatChecks();
    void sendsManyFilesAtOnceFromOneThread();
    void goesOnWhileTheApplicationIsBusy();
    void startsOnlyOnce();
    void leavesTheOffsetToThePrinterEvenAtTheEndOfTheFile();
};

namespace
{

QUrl urlOf(const TestPrinter &printer)
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(printer.port()));
}

} // namespace

void TestSending::bringsAFileToThePrinter_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("one byte") << QByteArray("a");
    QTest::newRow("one chunk") << compressibleBytes(chunkBytes);
    QTest::newRow("one byte more than a chunk") << randomBytes(chunkBytes + 1);
    QTest::newRow("several chunks") << compressibleBytes(3 * chunkBytes + 17);
}

void TestSending::bringsAFileToThePrinter()
{
    QFETCH(QByteArray, contents);
    TestPrinter printer;
    Sending sending(urlOf(printer), contents);
    QVERIFY(!sending.sender->canCancel());
    QVERIFY(sending.run());
    const ZySendResult result = sending.result();
    QVERIFY2(result.isSent(), qPrintable(result.sentence()));
    QCOMPARE(result.checkState(), 1);
    QCOMPARE(result.storedName(), QStringLiteral("part.bin"));
    QCOMPARE(result.bytes(), qint64(contents.size()));
    QCOMPARE(result.total(), qint64(contents.size()));
    QVERIFY(readFile(printer.path(QStringLiteral("part.bin"))) == contents);
    QCOMPARE(sending.offered.count(), 1);
    QCOMPARE(sending.resumed.count() + sending.restarted.count() + sending.retrying.count(), 0);
    const auto chunks = (contents.size() + chunkBytes - 1) / chunkBytes;
    QCOMPARE(sending.progress.count(), chunks);
    QCOMPARE(sending.progress.last().at(0).toLongLong(), qint64(contents.size()));
    QCOMPARE(sending.progress.last().at(1).toLongLong(), qint64(contents.size()));
    QVERIFY(!sending.sender->canCancel());
}

void TestSending::resumesWhereThePrinterStopped()
{
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    const QByteArray contents = randomBytes(4 * chunkBytes);
    Sending sending(proxy.url(), contents);
    proxy.cutAfter(CuttingProxy::ToPrinter, 2 * chunkBytes + chunkBytes / 2);
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QVERIFY(readFile(printer.path(QStringLiteral("part.bin"))) == contents);
    QCOMPARE(sending.retrying.count(), 1);
    QCOMPARE(sending.retrying.at(0).at(0).value<Interruption>(), Interruption::ConnectionLost);
    QCOMPARE(sending.retrying.at(0).at(1).toInt(), 1);
    QCOMPARE(sending.retrying.at(0).at(2).toInt(), 20);
    QCOMPARE(sending.resumed.count(), 1);
    QCOMPARE(sending.resumed.at(0).at(0).toLongLong(), qint64(2 * chunkBytes));
}

void TestSending::beginsAgainWhenThePrinterHasLostItsPart()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    bool isDropped = false;
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        if (printer.chunks().size() == 2 && !std::exchange(isDropped, true))
            printer.drop();
    });
    Sending sending(printer.url(), compressibleBytes(3 * chunkBytes));
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QCOMPARE(sending.restarted.count(), 1);
    QCOMPARE(sending.resumed.count(), 0);
}

void TestSending::reportsTheNameOfTheFirstOffer()
{
    TestPrinter printer;
    // More than is sent before the sender's thread hears of leave().
    const QByteArray contents = randomBytes(16 * chunkBytes);
    {
        Sending first(urlOf(printer), contents, impatient(), QStringLiteral("first.bin"));
        connect(first.sender.get(), &ZyFileSender::progress, first.sender.get(),
                &ZyFileSender::leave);
        QVERIFY(first.run());
        QVERIFY(printer.waitForConnections(0));
    }
    Sending second(urlOf(printer), contents, impatient(), QStringLiteral("second.bin"));
    QVERIFY(second.run());
    QVERIFY(second.result().isSent());
    QCOMPARE(second.resumed.count(), 1);
    QCOMPARE(second.result().storedName(), QStringLiteral("first.bin"));
    QVERIFY(readFile(printer.path(QStringLiteral("first.bin"))) == contents);
}

void TestSending::arrivesHoweverOftenTheLinkIsCut_data()
{
    QTest::addColumn<int>("ending");
    QTest::newRow("closed") << static_cast<int>(CuttingProxy::Ending::Close);
    QTest::newRow("reset") << static_cast<int>(CuttingProxy::Ending::Reset);
}

void TestSending::arrivesHoweverOftenTheLinkIsCut()
{
    QFETCH(int, ending);
    TestPrinter printer;
    CuttingProxy proxy(printer.port());
    const auto cutAgain = [&] {
        if (proxy.cutCount() < 12)
            proxy.cutAfter(CuttingProxy::ToPrinter, chunkBytes + chunkBytes / 2,
                           static_cast<CuttingProxy::Ending>(ending));
    };
    connect(&proxy, &CuttingProxy::wasCut, &proxy, cutAgain);
    cutAgain();
    const QByteArray contents = randomBytes(15 * chunkBytes);
    ZySendOptions options = impatient();
    options.setRetries(1); // in a row: each attempt gains a chunk
    Sending sending(proxy.url(), contents, options);
    QVERIFY(sending.run());
    QVERIFY2(sending.result().isSent(), qPrintable(sending.result().sentence()));
    QCOMPARE(proxy.cutCount(), 12);
    QCOMPARE(sending.resumed.count(), 12);
    QVERIFY(readFile(printer.path(QStringLiteral("part.bin"))) == contents);
}

void TestSending::connectsAgainWhenNothingBegins_data()
{
    QTest::addColumn<bool>("isAnswered");
    QTest::newRow("no reply") << false;
    // As from a printer that cannot read what stands in its reception file's place and then makes a
    // new one: without "cmd", so no transfer begins.
    QTest::newRow("a reply that begins nothing") << true;
}

void TestSending::connectsAgainWhenNothingBegins()
{
    QFETCH(bool, isAnswered);
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        if (!isAnswered || printer.connectionCount() > 1)
            return;
        QJsonObject reply = startFileReply(objectIn(text));
        reply.remove(QStringLiteral("cmd"));
        reply.remove(QStringLiteral("errorcode"));
        printer.send(reply);
    });
    Sending sending(printer.url(), "abc", impatient(50));
    connect(&printer, &ScriptedPrinter::peerConnected, &printer, [&] {
        if (printer.connectionCount() == 2)
            printer.answerTransfers();
    });
    QVERIFY(sending.run());
    QVERIFY2(sending.result().isSent(), qPrintable(sending.result().sentence()));
    QCOMPARE(sending.retrying.count(), 1);
    QCOMPARE(sending.retrying.at(0).at(0).value<Interruption>(), Interruption::Stalled);
}

void TestSending::waitsForAPrinterThatHasNotNoticedTheDrop()
{
    ScriptedPrinter printer;
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        if (printer.connectionCount() == 1)
            printer.drop();
        else if (printer.connectionCount() < 4)
            printer.send({{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                          {QStringLiteral("errorcode"), 1},
                          {QStringLiteral("wifistate"), 3}});
        else
            printer.send(startFileReply(objectIn(text)));
    });
    Sending sending(printer.url(), "abc");
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        const QString key = offeredKey(printer);
        printer.send(startDataReply(key, 3, 3));
        printer.send(checkDataReply(key, 1));
    });
    QVERIFY(sending.run());
    QVERIFY2(sending.result().isSent(), qPrintable(sending.result().sentence()));
    QCOMPARE(sending.retrying.count(), 3);
    QCOMPARE(sending.retrying.at(1).at(0).value<Interruption>(), Interruption::StillReceiving);
    // The pause doubles with each failure in a row.
    QCOMPARE(sending.retrying.at(2).at(2).toInt(), 80);
}

void TestSending::waitsLongForAPrinterThatChecks()
{
    ScriptedPrinter printer;
    printer.answerTransfers({true, 0, 1, false});
    connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
        const QString key = offeredKey(printer);
        printer.send(startDataReply(key, 3, 3));
        QTimer::singleShot(400, &printer,
                           [&printer, key] { printer.send(checkDataReply(key, 1)); });
    });
    Sending sending(printer.url(), "abc", impatient(150));
    QVERIFY(sending.run());
    QVERIFY2(sending.result().isSent(), qPrintable(sending.result().sentence()));
    QCOMPARE(sending.retrying.count(), 0);
}

void TestSending::sendsManyFilesAtOnceFromOneThread()
{
    constexpr int count = 8;
    const QByteArray contents = randomBytes(2 * chunkBytes);
    std::vector<std::unique_ptr<ScriptedPrinter>> printers;
    std::vector<std::unique_ptr<Sending>> sendings;
    for (int i = 0; i < count; ++i) {
        printers.push_back(std::make_unique<ScriptedPrinter>());
        printers.back()->answerTransfers();
        sendings.push_back(std::make_unique<Sending>(printers.back()->url(), contents));
    }
    for (const auto &sending : sendings)
        sending->sender->start();
    for (const auto &sending : sendings) {
        QVERIFY(sending->waitForEnd());
        QVERIFY2(sending->result().isSent(), qPrintable(sending->result().sentence()));
    }
    for (const auto &printer : printers) {
        QByteArray received;
        for (const QByteArray &chunk : printer->chunks())
            received += qUncompress(chunk);
        QVERIFY(received == contents);
    }
}

void TestSending::goesOnWhileTheApplicationIsBusy()
{
    constexpr int chunks = 8;
    QUrl url;
    QSemaphore isListening;
    QSemaphore hasAll;
    const std::unique_ptr<QThread> printerThread(QThread::create([&] {
        ScriptedPrinter printer;
        printer.answerTransfers();
        connect(&printer, &ScriptedPrinter::chunkReceived, &printer, [&] {
            if (printer.chunks().size() == chunks)
                hasAll.release();
        });
        url = printer.url();
        isListening.release();
        QEventLoop().exec();
    }));
    printerThread->start();
    QVERIFY(isListening.tryAcquire(1, patience));
    Sending sending(url, compressibleBytes(chunks * chunkBytes));
    bool hasBlocked = false;
    connect(sending.sender.get(), &ZyFileSender::progress, this, [&] {
        if (!std::exchange(hasBlocked, true))
            QVERIFY(hasAll.tryAcquire(1, patience));
    });
    QVERIFY(sending.run());
    QVERIFY(sending.result().isSent());
    QVERIFY(hasBlocked);
    printerThread->quit();
    QVERIFY(printerThread->wait(patience));
}

void TestSending::startsOnlyOnce()
{
    ScriptedPrinter printer;
    printer.answerTransfers();
    Sending sending(printer.url(), "abc");
    sending.sender->start();
    sending.sender->start();
    QVERIFY(sending.waitForEnd());
    sending.sender->start();
    spinOnce();
    QCOMPARE(printer.connectionCount(), 1);
    QCOMPARE(sending.finished.count(), 1);
}

void TestSending::leavesTheOffsetToThePrinterEvenAtTheEndOfTheFile()
{
    ScriptedPrinter printer;
    Sending sending(printer.url(), "abc");
    connect(&printer, &ScriptedPrinter::textReceived, &printer, [&](const QString &text) {
        const QJsonObject request = objectIn(text);
        printer.send(startFileReply(request, {true, 3, 1, true}));
        printer.send(checkDataReply(request.value(QStringLiteral("key")).toString(), 1));
    });
    QVERIFY(sending.run());
    QVERIFY2(sending.result().isSent(), qPrintable(sending.result().sentence()));
    QCOMPARE(printer.chunks().size(), 0);
}

ZY_TEST(TestSending)
#include "tst_sending.moc"
