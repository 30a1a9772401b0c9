// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Hosts whose slots use up wake-ups of the event loop: the send loop must not sleep for good.

#include "session.h"
#include "testprogram.h"
#include "texts.h"
#include "threadedprinter.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

using zytest::ScriptedPrinter;
using zytest::ThreadedPrinter;
using zytest::TransferRules;

namespace
{

struct Session : zytest::TransferSession<ThreadedPrinter> {
    QString file() { return writeFile("local.zydlp"_s, zytest::compressibleBytes(3 << 20)); }
};

using Spin = void (*)();
using Action = void (*)(Session &);

void processEvents()
{
    QCoreApplication::processEvents();
}

void processEventsTwice()
{
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

void close(Session &session)
{
    session.client.close();
}

void cancel(Session &session)
{
    session.client.cancel();
}

/// A send loop that sleeps for good would take the test with it.
class Watchdog
{
public:
    explicit Watchdog(ZySslEchoClient &client)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &client, [this, &client] {
            m_hasBitten = true;
            client.close();
        });
        m_timer.start(zytest::patience / 2);
    }

    bool hasBitten() const { return m_hasBitten; }

private:
    QTimer m_timer;
    bool m_hasBitten = false;
};

} // namespace

Q_DECLARE_METATYPE(Spin)
Q_DECLARE_METATYPE(Action)

class TestStalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSlotMaySpin_data();
    void aSlotMaySpin();
    void aSlotMayEndTheTransferAndSpin_data();
    void aSlotMayEndTheTransferAndSpin();
    void aForeignSlotMayDeleteTheClientAndSpin();
    void aTransferMayBeginWhileAnotherRuns_data();
    void aTransferMayBeginWhileAnotherRuns();
    void theApplicationMayQuitDuringATransfer_data();
    void theApplicationMayQuitDuringATransfer();
    void aLoopThatASlotQuitsMayBeSpunIn_data();
    void aLoopThatASlotQuitsMayBeSpunIn();

private:
    static void addSpins();
};

void TestStalls::addSpins()
{
    QTest::addColumn<Spin>("spin");
    QTest::newRow("processEvents()") << &processEvents;
    QTest::newRow("processEvents() twice") << &processEventsTwice;
    QTest::newRow("a nested loop") << &zytest::spinOnce;
}

void TestStalls::aSlotMaySpin_data()
{
    addSpins();
}

void TestStalls::aSlotMaySpin()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, spin);
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this, spin);
    const Watchdog watchdog(session.client);

    session.client.sendFile(session.file(), "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!watchdog.hasBitten());
    WAIT_COMPARE(session.trace.count("finish"_s), 1);
    QCOMPARE(session.printer.chunkCount(), 3);
}

void TestStalls::aSlotMayEndTheTransferAndSpin_data()
{
    QTest::addColumn<bool>("isForeign");
    QTest::addColumn<Action>("end");
    QTest::addColumn<Spin>("spin");
    for (const bool isForeign : {false, true}) {
        const auto row = [&](const char *what) -> QTestData & {
            return QTest::addRow("%s slot: %s", isForeign ? "a foreign" : "the client's", what)
                << isForeign;
        };
        row("close()") << &close << &processEvents;
        row("close(), twice") << &close << &processEventsTwice;
        row("close(), a nested loop") << &close << Spin(&zytest::spinOnce);
        row("cancel()") << &cancel << &processEvents;
        row("cancel(), twice") << &cancel << &processEventsTwice;
        row("cancel(), a nested loop") << &cancel << Spin(&zytest::spinOnce);
    }
}

void TestStalls::aSlotMayEndTheTransferAndSpin()
{
    QFETCH(bool, isForeign);
    QFETCH(Action, end);
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    const auto endAndSpin = [&] {
        end(session);
        spin();
    };
    if (isForeign) {
        TransferRules silent;
        silent.acknowledges = false;
        session.printer.answerTransfers(silent);
        // Posted by the printer's thread while the send loop sleeps; no delivery of the client's.
        connect(&session.printer.printer(), &ScriptedPrinter::chunkReceived, this, endAndSpin);
    } else {
        connect(&session.client, &ZySslEchoClient::fileTransProgress, this, endAndSpin);
    }
    const Watchdog watchdog(session.client);

    session.client.sendFile(session.file(), "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!watchdog.hasBitten());
    QVERIFY(session.logLines().contains("send end"_s));
    QCOMPARE(session.printer.chunkCount(), 1);
}

void TestStalls::aForeignSlotMayDeleteTheClientAndSpin()
{
    ThreadedPrinter printer;
    TransferRules silent;
    silent.acknowledges = false;
    printer.answerTransfers(silent);
    QPointer<ZySslEchoClient> client = new ZySslEchoClient(printer.url());
    zytest::useThreads(*client);
    WAIT_COMPARE(client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    QTemporaryDir dir;
    connect(&printer.printer(), &ScriptedPrinter::chunkReceived, this, [&] {
        delete client;
        processEvents();
    });
    bool hasBitten = false;
    QTimer watchdog;
    connect(&watchdog, &QTimer::timeout, this, [&] { hasBitten = true; });
    watchdog.start(zytest::patience / 2);

    client->sendFile(zytest::writeFile(dir.filePath("local.zydlp"_s), "0123456789"), "m"_s);

    WAIT_VERIFY(!client);
    QVERIFY(!hasBitten);
}

void TestStalls::aTransferMayBeginWhileAnotherRuns_data()
{
    addSpins();
}

void TestStalls::aTransferMayBeginWhileAnotherRuns()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    TransferRules silent;
    silent.acknowledges = false;
    session.printer.answerTransfers(silent);
    const QString path = session.file();
    QFile file(path);
    const QJsonObject again{
        {"key"_s, session.client.getFileKey(file)},
        {"offset"_s, QString::number(3 << 20)},
    };
    int transfers = 0;
    connect(&session.printer.printer(), &ScriptedPrinter::chunkReceived, this, [&] {
        // Nothing is left to send from there, so the inner transfer ends, and the outer with it.
        if (++transfers == 1)
            session.client.beginTransFile(again);
        spin();
    });
    const Watchdog watchdog(session.client);

    session.client.sendFile(path, "m"_s);

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!watchdog.hasBitten());
    QCOMPARE(session.logLines().filter("send end"_s).size(), 2);
    QCOMPARE(session.printer.chunkCount(), 1);
}

void TestStalls::theApplicationMayQuitDuringATransfer_data()
{
    addSpins();
}

void TestStalls::theApplicationMayQuitDuringATransfer()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        QCoreApplication::quit();
        spin();
    });
    const Watchdog watchdog(session.client);
    session.client.sendFile(session.file(), "m"_s);

    QCoreApplication::exec();

    // The transfer was on the stack, so it has gone on to its end.
    QVERIFY(!watchdog.hasBitten());
    QVERIFY(session.logLines().contains("send end"_s));
    QVERIFY(session.hasEnded());
    QCOMPARE(session.printer.chunkCount(), 3);
}

void TestStalls::aLoopThatASlotQuitsMayBeSpunIn_data()
{
    addSpins();
}

void TestStalls::aLoopThatASlotQuitsMayBeSpunIn()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    QEventLoop loop;
    connect(&session.client, &ZySslEchoClient::checkVersion, &loop, &QEventLoop::quit);
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this, spin);
    const Watchdog watchdog(session.client);

    QMetaObject::invokeMethod(&session.printer.printer(),
                              [&] { session.printer.printer().sendText(R"({"version":"1"})"_s); });
    loop.exec();

    QVERIFY(!watchdog.hasBitten());
    QCOMPARE(session.trace.names(), (QStringList{"checkVersion"_s, "jsonMessageReceived"_s}));
}

ZY_TEST(TestStalls)

#include "tst_stalls.moc"
