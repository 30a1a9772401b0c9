// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A host may delete the client inside a slot connected to any of its signals.

#include "modelfiles.h"
#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <functional>

using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Client = ZySslEchoClient;

namespace
{

/// A client that its own signals may delete, and all that it talks to.
struct Bench {
    ScriptedPrinter printer;
    QTemporaryDir dir;
    QPointer<Client> client = new Client(printer.url());
    int deletions = 0;

    Bench() { zytest::useThreads(*client); }
    ~Bench() { delete client; }

    QString file() const
    {
        return zytest::writeFile(dir.filePath(QStringLiteral("local.zydlp")),
                                 zytest::compressibleBytes(3 * zytest::chunkBytes));
    }
};

using Connect = std::function<void(Client &, const std::function<void()> &)>;
using Provoke = std::function<void(Bench &)>;
using Delete = std::function<void(Client *)>;

/// What every host might do in a slot: show a dialogue.
void spin()
{
    QEventLoop loop;
    int passes = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (++passes == 20)
            loop.quit();
    });
    timer.start(0);
    loop.exec();
}

template <typename Signal> Connect on(Signal signal)
{
    return [signal](Client &client, const std::function<void()> &slot) {
        QObject::connect(&client, signal, &client, slot);
    };
}

Provoke reply(const char *text)
{
    return [text](Bench &bench) { bench.printer.sendText(QString::fromUtf8(text)); };
}

void transfer(Bench &bench)
{
    bench.printer.answerTransfers();
    bench.client->sendFile(bench.file(), "m"_s);
}

void transferThatIsCancelled(Bench &bench)
{
    TransferRules rules;
    rules.acknowledges = false;
    bench.printer.answerTransfers(rules);
    QObject::connect(&bench.printer, &ScriptedPrinter::chunkReceived, bench.client,
                     [&bench] { bench.client->cancel(); });
    bench.client->sendFile(bench.file(), "m"_s);
}

void transferThatIsClosed(Bench &bench)
{
    TransferRules rules;
    rules.acknowledges = false;
    bench.printer.answerTransfers(rules);
    QObject::connect(&bench.printer, &ScriptedPrinter::chunkReceived, bench.client,
                     [&bench] { bench.client->close(); });
    bench.client->sendFile(bench.file(), "m"_s);
}

void transferThatIsDropped(Bench &bench)
{
    TransferRules rules;
    rules.acknowledges = false;
    bench.printer.answerTransfers(rules);
    QObject::connect(&bench.printer, &ScriptedPrinter::chunkReceived, bench.client,
                     [&bench] { bench.printer.drop(); });
    bench.client->sendFile(bench.file(), "m"_s);
}

} // namespace

Q_DECLARE_METATYPE(Connect)
Q_DECLARE_METATYPE(Provoke)
Q_DECLARE_METATYPE(Delete)

class TestDeletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void survivesDeletionInASlot_data();
    void survivesDeletionInASlot();
    void endsTheTransferAtOnce_data();
    void endsTheTransferAtOnce();
    void survivesDeletionBetweenTwoChunks();

private:
    static void addRows(const char *tag, const Connect &connect, const Provoke &provoke);
    static void addReplyRows();
    static void addTransferRows();
    static void addEndingRows();
};

namespace
{

/// The ways of deleting, tagged.
QVector<QPair<const char *, Delete>> waysOfDeleting()
{
    return {
        {"delete", [](Client *client) { delete client; }},
        {"delete, then spin",
         [](Client *client) {
             delete client;
             spin();
         }},
        {"delete while spinning",
         [](Client *client) {
             QTimer::singleShot(0, client, [client] { delete client; });
             spin();
         }},
        {"deleteLater", [](Client *client) { client->deleteLater(); }},
        {"deleteLater, then spin",
         [](Client *client) {
             client->deleteLater();
             spin();
         }},
        {"deleteLater while spinning",
         [](Client *client) {
             QTimer::singleShot(0, client, [client] { client->deleteLater(); });
             spin();
         }},
    };
}

} // namespace

void TestDeletion::addRows(const char *tag, const Connect &connect, const Provoke &provoke)
{
    for (const auto &way : waysOfDeleting())
        QTest::addRow("%s: %s", tag, way.first) << connect << provoke << way.second;
}

void TestDeletion::addReplyRows()
{
    addRows("jsonMessageReceived", on(&Client::jsonMessageReceived), reply("{}"));
    addRows("printErrorCode", on(&Client::printErrorCode),
            reply(R"({"cmd":"START_PRINT","status":"BUSY"})"));
    addRows("checkVersion", on(&Client::checkVersion), reply(R"({"version":"1"})"));
    addRows("checkVersion before a file", on(&Client::checkVersion),
            reply(R"({"cmd":"START_FILE","key":"0","version":"1"})"));
    addRows("getPrinterStatusInfo", on(&Client::getPrinterStatusInfo),
            reply(R"({"cmd":"GET_PRINT_STATUS"})"));
    addRows("slotGetPrinterWorkingLife", on(&Client::slotGetPrinterWorkingLife),
            reply(R"({"cmd":"PRINT_WORKING_LIFE"})"));
    addRows("transError, refused", on(&Client::transError),
            reply(R"({"cmd":"START_FILE","errorcode":1})"));
    addRows("transError, unknown key", on(&Client::transError), reply(R"({"cmd":"START_FILE"})"));
    addRows("transError, no such file", on(&Client::transError),
            [](Bench &bench) { bench.client->sendFile("/nonexistent"_s, "m"_s); });
    addRows("cancelFinished", on(&Client::cancelFinished), reply(R"({"cmd":"CANCEL_FILE"})"));
    addRows("finish", on(&Client::finish), reply(R"({"cmd":"CHECK_DATA"})"));
    addRows("fileTransProgress", on(&Client::fileTransProgress), reply(R"({"cmd":"START_DATA"})"));
}

void TestDeletion::addTransferRows()
{
    addRows("fileTransProgress in a transfer", on(&Client::fileTransProgress), transfer);
    addRows("jsonMessageReceived in a transfer", on(&Client::jsonMessageReceived), transfer);
    addRows("finish of a transfer", on(&Client::finish), transfer);
    addRows("cancelFinished of a transfer", on(&Client::cancelFinished), transferThatIsCancelled);
    addRows("pauseSuccess in a transfer", on(&Client::pauseSuccess), transferThatIsClosed);
    addRows("disconnected in a transfer", on(&Client::disconnected), transferThatIsDropped);
}

void TestDeletion::addEndingRows()
{
    addRows("pauseSuccess inside close()", on(&Client::pauseSuccess),
            [](Bench &bench) { bench.client->close(); });
    addRows("pauseSuccess after a message", on(&Client::pauseSuccess), [](Bench &bench) {
        QObject::connect(bench.client, &Client::jsonMessageReceived, bench.client, &Client::close);
        bench.printer.sendText("{}"_s);
        bench.printer.sendText("{}"_s);
    });
    addRows("disconnected, closed by the peer", on(&Client::disconnected),
            [](Bench &bench) { bench.printer.close(); });
    addRows("disconnected, going away", on(&Client::disconnected),
            [](Bench &bench) { bench.printer.close(QWebSocketProtocol::CloseCodeGoingAway); });
    addRows("disconnected, dropped", on(&Client::disconnected),
            [](Bench &bench) { bench.printer.drop(); });
    addRows("disconnected after a message", on(&Client::disconnected), [](Bench &bench) {
        bench.printer.sendText("{}"_s);
        bench.printer.close();
    });
    addRows("disconnected from the keep-alive", on(&Client::disconnected), [](Bench &bench) {
        for (int i = 0; i < 4; ++i)
            QMetaObject::invokeMethod(bench.client, "trying", Qt::DirectConnection);
    });
    addRows("connected once more", on(&Client::connected),
            [](Bench &bench) { bench.client->openWithUrl(bench.printer.url()); });
}

void TestDeletion::survivesDeletionInASlot_data()
{
    QTest::addColumn<Connect>("connectSlot");
    QTest::addColumn<Provoke>("provoke");
    QTest::addColumn<Delete>("deleteClient");
    addRows("connected", on(&Client::connected), [](Bench &) {});
    addReplyRows();
    addTransferRows();
    addEndingRows();
}

void TestDeletion::survivesDeletionInASlot()
{
    QFETCH(Connect, connectSlot);
    QFETCH(Provoke, provoke);
    QFETCH(Delete, deleteClient);
    const bool isFirstConnect = QByteArray(QTest::currentDataTag()).startsWith("connected:");
    Bench bench;
    if (!isFirstConnect) {
        WAIT_COMPARE(bench.client->socketConnectStatus(), QAbstractSocket::ConnectedState);
        WAIT_VERIFY(bench.printer.peer());
    }
    connectSlot(*bench.client, [&bench, deleteClient] {
        if (bench.deletions++ == 0)
            deleteClient(bench.client);
    });

    provoke(bench);

    WAIT_VERIFY(!bench.client);
    QVERIFY(bench.deletions > 0);
    // Lets Qt unwind and the held socket go; the printer sees the connection end.
    WAIT_VERIFY(!bench.printer.peer());
    spin();
}

void TestDeletion::endsTheTransferAtOnce_data()
{
    QTest::addColumn<Delete>("deleteClient");
    for (const auto &way : waysOfDeleting())
        QTest::newRow(way.first) << way.second;
}

void TestDeletion::endsTheTransferAtOnce()
{
    QFETCH(Delete, deleteClient);
    Bench bench;
    WAIT_COMPARE(bench.client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    WAIT_VERIFY(bench.printer.peer());
    zytest::LogCapture log;
    connect(bench.client, &Client::fileTransProgress, bench.client,
            [&bench, deleteClient] { deleteClient(bench.client); });

    transfer(bench);

    WAIT_VERIFY(!bench.client);
    WAIT_VERIFY(!bench.printer.peer());
    // A deferred deletion may come only while the second chunk is on its way.
    QVERIFY(bench.printer.chunks().size() <= 2);
    QVERIFY(!log.texts().contains("send end"_s));
}

void TestDeletion::survivesDeletionBetweenTwoChunks()
{
    Bench bench;
    WAIT_COMPARE(bench.client->socketConnectStatus(), QAbstractSocket::ConnectedState);
    WAIT_VERIFY(bench.printer.peer());
    TransferRules rules;
    rules.acknowledges = false;
    bench.printer.answerTransfers(rules);
    connect(&bench.printer, &ScriptedPrinter::chunkReceived, &bench.printer,
            [&bench] { delete bench.client; });

    bench.client->sendFile(bench.file(), "m"_s);

    WAIT_VERIFY(!bench.client);
    WAIT_VERIFY(!bench.printer.peer());
    QCOMPARE(bench.printer.chunks().size(), 1);
}

ZY_TEST(TestDeletion)

#include "tst_deletion.moc"
