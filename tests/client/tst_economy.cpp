// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a transfer costs: no processor time while it waits, and no more memory for a larger file.

#include "processview.h"
#include "rawprinter.h"
#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QEventLoop>
#include <QFile>
#include <QTimer>

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestEconomy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sleepsWhileAChunkIsUnacknowledged_data();
    void sleepsWhileAChunkIsUnacknowledged();
    void aProgressSlotMaySleepInANestedLoop();
    void aProgressSlotMayWaitForAnotherTransfer();
    void needsNoMoreMemoryForALargerFile_data();
    void needsNoMoreMemoryForALargerFile();
    void keepsLittleForAPrinterThatAcknowledgesWhatItDoesNotRead();
};

namespace
{

constexpr qint64 mebi = 1024 * 1024;
constexpr int waiting = 1000; // ms

} // namespace

void TestEconomy::sleepsWhileAChunkIsUnacknowledged_data()
{
    QTest::addColumn<bool>("isConnected");
    QTest::newRow("connected") << true;
    QTest::newRow("the connection lost") << false;
}

void TestEconomy::sleepsWhileAChunkIsUnacknowledged()
{
    QFETCH(bool, isConnected);
    Session session;
    QVERIFY(session.open());
    TransferRules silent;
    silent.acknowledges = false;
    session.printer.answerTransfers(silent);
    qint64 before = 0;
    qint64 used = -1;
    QTimer timer;
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, &session.client, [&] {
        used = zytest::processorTime() - before;
        session.client.close();
    });
    // Both ends live in this process, so its time is theirs.
    connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client, [&] {
        if (!isConnected)
            session.printer.drop();
        before = zytest::processorTime();
        timer.start(waiting);
    });

    session.client.sendFile(session.writeFile("local.zydlp"_s, "0123456789"), "m"_s);
    WAIT_VERIFY(session.hasEnded());

    QVERIFY(used >= 0);
    QVERIFY2(used < waiting / 10, qPrintable(QStringLiteral("%1 ms").arg(used)));
}

void TestEconomy::aProgressSlotMaySleepInANestedLoop()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    qint64 used = -1;
    // The send loop below has its acknowledgement and would go on, but the slot still runs.
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        const qint64 before = zytest::processorTime();
        QEventLoop loop;
        QTimer::singleShot(waiting, &loop, &QEventLoop::quit);
        loop.exec();
        used = zytest::processorTime() - before;
    });

    session.client.sendFile(session.writeFile("local.zydlp"_s, "0123456789"), "m"_s);
    WAIT_VERIFY(session.hasEnded());

    QVERIFY(used >= 0);
    QVERIFY2(used < waiting / 10, qPrintable(QStringLiteral("%1 ms").arg(used)));
}

void TestEconomy::aProgressSlotMayWaitForAnotherTransfer()
{
    Session session;
    QVERIFY(session.open());
    session.printer.answerTransfers();
    Session other;
    QVERIFY(other.open());
    TransferRules silent;
    silent.acknowledges = false;
    other.printer.answerTransfers(silent);
    const QString path = session.writeFile("local.zydlp"_s, "0123456789");
    QFile file(path);
    const QString key = other.client.getFileKey(file);
    qint64 used = -1;
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        const qint64 before = zytest::processorTime();
        other.client.sendFileStart(file, "m"_s);
        QTimer::singleShot(waiting, &other.client, [&] { other.client.close(); });
        // At once, so that no loop but the two that send is on the stack.
        other.client.beginTransFile({{"key"_s, key}});
        used = zytest::processorTime() - before;
    });

    session.client.sendFile(path, "m"_s);
    WAIT_VERIFY(session.hasEnded());

    QVERIFY(used >= 0);
    QVERIFY2(used < waiting / 10, qPrintable(QStringLiteral("%1 ms").arg(used)));
}

void TestEconomy::needsNoMoreMemoryForALargerFile_data()
{
    QTest::addColumn<bool>("compress");
    QTest::newRow("as it is") << false;
    QTest::newRow("compressed") << true;
}

void TestEconomy::needsNoMoreMemoryForALargerFile()
{
    QFETCH(bool, compress);
    Session session;
    QVERIFY(session.open());
    session.printer.keepChunks(false);
    TransferRules rules;
    rules.compress = compress;
    session.printer.answerTransfers(rules);
    const auto peakAfterSending = [&](qint64 size) {
        QFile file(session.writeFile("local.zydlp"_s, "start"));
        const bool isSent = file.resize(size) && session.client.sendFileStart(file, "m"_s)
            && zytest::waitUntil([&] {
                                return session.hasEnded() && session.trace.count("finish"_s) == 1;
                            });
        session.trace.clear();
        return isSent ? zytest::peakMemory() : -1;
    };

    // The first transfer pays for every buffer that the second one uses.
    const qint64 small = peakAfterSending(8 * mebi);
    QVERIFY(small > 0);
    const qint64 large = peakAfterSending(64 * mebi);
    QVERIFY(large > 0);

    QVERIFY2(large - small < 8 * mebi, qPrintable(QStringLiteral("%1 bytes").arg(large - small)));
}

void TestEconomy::keepsLittleForAPrinterThatAcknowledgesWhatItDoesNotRead()
{
    using zytest::RawPrinter;
    constexpr int chunks = 48;
    zytest::TransferSession<RawPrinter> session;
    QVERIFY(session.open());
    session.client.setWindow(2);
    QString key;
    int acknowledged = 0;
    qsizetype sent = 0;
    const auto acknowledge = [&] {
        sent = session.logLines().filter("sendBytes="_s).size();
        if (acknowledged == chunks && sent > 0) {
            session.client.close();
            return;
        }
        acknowledged = qMin(acknowledged + 1, chunks);
        session.printer.send(zytest::startDataReply(key, chunks * mebi, acknowledged * mebi));
    };
    connect(&session.printer, &RawPrinter::textReceived, this, [&](const QString &text) {
        const QJsonObject request = zytest::objectIn(text);
        key = request.value("key"_s).toString();
        session.printer.stopReading();
        session.printer.send(zytest::startFileReply(request));
        acknowledge();
    });
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, acknowledge);

    session.client.sendFile(
        session.writeFile("local.zydlp"_s, zytest::randomBytes(int(mebi)).repeated(chunks)), "m"_s);
    WAIT_VERIFY(session.hasEnded());

    // What the system takes for both ends, and a little more.
    QVERIFY2(sent < chunks / 2, qPrintable(QString::number(sent)));
}

ZY_TEST(TestEconomy)

#include "tst_economy.moc"
