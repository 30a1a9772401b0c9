// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Hosts whose slots use up wake-ups of the event loop: the send loop must not sleep for good.

#include "session.h"
#include "testprogram.h"
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

QString s(const char *text)
{
    return QString::fromLatin1(text);
}

struct Session : zytest::TransferSession<ThreadedPrinter> {
    QString file() { return writeFile(s("local.zydlp"), zytest::compressibleBytes(3 << 20)); }
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

class StallsTest : public QObject
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

void StallsTest::addSpins()
{
    QTest::addColumn<Spin>("spin");
    QTest::newRow("processEvents()") << &processEvents;
    QTest::newRow("processEvents() twice") << &processEventsTwice;
    QTest::newRow("a nested loop") << &zytest::spinOnce;
}

void StallsTest::aSlotMaySpin_data()
{
    addSpins();
}

void StallsTest::aSlotMaySpin()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, spin);
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this, spin);
    const Watchdog watchdog(session.client);

    session.client.sendFile(session.file(), s("m"));

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!watchdog.hasBitten());
    WAIT_COMPARE(session.trace.count(s("finish")), 1);
    QCOMPARE(session.printer.chunkCount(), 3);
}

void StallsTest::aSlotMayEndTheTransferAndSpin_data()
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

void StallsTest::aSlotMayEndTheTransferAndSpin()
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

    session.client.sendFile(session.file(), s("m"));

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!watchdog.hasBitten());
    QVERIFY(session.logLines().contains(s("send end")));
    QCOMPARE(session.printer.chunkCount(), 1);
}

void StallsTest::aForeignSlotMayDeleteTheClientAndSpin()
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

    client->sendFile(zytest::writeFile(dir.filePath(s("local.zydlp")), "0123456789"), s("m"));

    WAIT_VERIFY(!client);
    QVERIFY(!hasBitten);
}

void StallsTest::aTransferMayBeginWhileAnotherRuns_data()
{
    addSpins();
}

void StallsTest::aTransferMayBeginWhileAnotherRuns()
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
        {s("key"), session.client.getFileKey(file)},
        {s("offset"), QString::number(3 << 20)},
    };
    int transfers = 0;
    connect(&session.printer.printer(), &ScriptedPrinter::chunkReceived, this, [&] {
        // Nothing is left to send from there, so the inner transfer ends, and the outer with it.
        if (++transfers == 1)
            session.client.beginTransFile(again);
        spin();
    });
    const Watchdog watchdog(session.client);

    session.client.sendFile(path, s("m"));

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!watchdog.hasBitten());
    QCOMPARE(session.logLines().filter(s("send end")).size(), 2);
    QCOMPARE(session.printer.chunkCount(), 1);
}

void StallsTest::theApplicationMayQuitDuringATransfer_data()
{
    addSpins();
}

void StallsTest::theApplicationMayQuitDuringATransfer()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    connect(&session.client, &ZySslEchoClient::fileTransProgress, this, [&] {
        QCoreApplication::quit();
        spin();
    });
    const Watchdog watchdog(session.client);
    session.client.sendFile(session.file(), s("m"));

    QCoreApplication::exec();

    // The transfer was on the stack, so it has gone on to its end.
    QVERIFY(!watchdog.hasBitten());
    QVERIFY(session.logLines().contains(s("send end")));
    QVERIFY(session.hasEnded());
    QCOMPARE(session.printer.chunkCount(), 3);
}

void StallsTest::aLoopThatASlotQuitsMayBeSpunIn_data()
{
    addSpins();
}

void StallsTest::aLoopThatASlotQuitsMayBeSpunIn()
{
    QFETCH(Spin, spin);
    Session session;
    QVERIFY(session.open());
    QEventLoop loop;
    connect(&session.client, &ZySslEchoClient::checkVersion, &loop, &QEventLoop::quit);
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this, spin);
    const Watchdog watchdog(session.client);

    QMetaObject::invokeMethod(&session.printer.printer(),
                              [&] { session.printer.printer().sendText(s(R"({"version":"1"})")); });
    loop.exec();

    QVERIFY(!watchdog.hasBitten());
    QCOMPARE(session.trace.names(), (QStringList{s("checkVersion"), s("jsonMessageReceived")}));
}

ZY_TEST(StallsTest)

#include "tst_stalls.moc"
