// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Several chunks under way at once, with printers that announce that they bear it.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <memory>
#include <utility>

using zytest::chunkBytes;
using zytest::ScriptedPrinter;
using zytest::TransferRules;
using Session = zytest::TransferSession<ScriptedPrinter>;

class TestWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isBetweenOneAndSixteen();
    void sendsAsManyChunksAsBothSidesBear_data();
    void sendsAsManyChunksAsBothSidesBear();
    void keepsTheOrderOfAllThatIsSeen();
    void endsOnlyWithTheLastAcknowledgement();
    void goesOnFromAnOffset();
    void cancelsWithTwoChunksUnderWay();
    void closesWithTwoChunksUnderWay();
    void isDeletedWithTwoChunksUnderWay();
};

namespace
{

TransferRules windowOf(int chunks, bool acknowledges = true)
{
    TransferRules rules;
    rules.window = chunks;
    rules.acknowledges = acknowledges;
    return rules;
}

/// Sends a file of @p chunkCount chunks to a printer of these @p rules.
QByteArray sendChunks(Session &session, int chunkCount, const TransferRules &rules)
{
    const QByteArray contents = zytest::compressibleBytes(chunkCount * chunkBytes - 7);
    session.printer.answerTransfers(rules);
    session.client.sendFile(session.writeFile("local.zydlp"_s, contents), "m"_s);
    return contents;
}

/// Calls @p act once @p count chunks have arrived: from inside the send loop, which spins
/// meanwhile.
template <typename Act> void whenArrived(Session &session, int count, Act act)
{
    QObject::connect(&session.printer, &ScriptedPrinter::chunkReceived, &session.client,
                     [&session, count, act, isDone = false]() mutable {
                         if (session.printer.chunks().size() >= count
                             && !std::exchange(isDone, true))
                             act();
                     });
}

/// Begins a transfer that nobody acknowledges and calls @p act with two chunks under way.
template <typename Act> void actWithTwoUnderWay(Session &session, Act act)
{
    session.client.setWindow(2);
    whenArrived(session, 2, act);
    sendChunks(session, 4, windowOf(2, false));
}

} // namespace

void TestWindow::isBetweenOneAndSixteen()
{
    ZySslEchoClient client{QUrl()};
    QCOMPARE(client.window(), 1);
    for (const auto &[wanted, kept] : {std::pair{-1, 1}, {0, 1}, {2, 2}, {16, 16}, {17, 16}}) {
        client.setWindow(wanted);
        QCOMPARE(client.window(), kept);
    }
}

void TestWindow::sendsAsManyChunksAsBothSidesBear_data()
{
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("announced");
    QTest::addColumn<int>("expected");
    QTest::newRow("neither") << 1 << 0 << 1;
    QTest::newRow("the printer alone") << 1 << 2 << 1;
    QTest::newRow("the client alone") << 2 << 0 << 1;
    QTest::newRow("both") << 2 << 2 << 2;
    QTest::newRow("the client less") << 2 << 4 << 2;
    QTest::newRow("the printer less") << 4 << 3 << 3;
    QTest::newRow("no number") << 2 << -1 << 1;
}

void TestWindow::sendsAsManyChunksAsBothSidesBear()
{
    QFETCH(const int, wanted);
    QFETCH(const int, announced);
    QFETCH(const int, expected);
    Session session;
    QVERIFY(session.open());
    session.client.setWindow(wanted);

    // A message sent now comes after all that is under way.
    whenArrived(session, expected, [&] { session.client.versionCheckCmd(); });
    int underWay = 0;
    connect(&session.printer, &ScriptedPrinter::textReceived, this, [&](const QString &text) {
        if (!text.contains("VERSION_CHECK"_s))
            return;
        underWay = int(session.printer.chunks().size());
        session.client.close();
    });

    sendChunks(session, 6, windowOf(announced, false));

    WAIT_VERIFY(session.hasEnded());
    QCOMPARE(underWay, expected);
}

void TestWindow::keepsTheOrderOfAllThatIsSeen()
{
    QStringList seen[2];
    QStringList logged[2];
    QByteArrayList sent[2];
    for (const int window : {1, 2}) {
        Session session;
        QVERIFY(session.open());
        session.client.setWindow(window);
        sendChunks(session, 5, windowOf(2));
        WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
        seen[window - 1]
            = QStringList(session.trace.lines()).replaceInStrings(session.dir.path(), QString());
        logged[window - 1] = session.logLines().replaceInStrings(session.dir.path(), QString());
        sent[window - 1] = session.printer.chunks();
    }
    QCOMPARE(seen[1].filter("fileTransProgress"_s), seen[0].filter("fileTransProgress"_s));
    QCOMPARE(logged[1], logged[0]);
    QVERIFY(sent[1] == sent[0]);
}

void TestWindow::endsOnlyWithTheLastAcknowledgement()
{
    Session session;
    QVERIFY(session.open());
    session.client.setWindow(3);
    const qint64 size = 3 * chunkBytes - 7;
    const auto acknowledge = [&](qint64 received) {
        const auto request = session.printer.messages("START_FILE"_s).constFirst();
        const QString key = request["key"_s].toString();
        session.printer.send(zytest::startDataReply(key, size, received));
    };
    whenArrived(session, 3, [&] {
        acknowledge(chunkBytes);
        acknowledge(2 * chunkBytes);
    });
    bool wasTooEarly = false;
    connect(&session.client, &ZySslEchoClient::jsonMessageReceived, this,
            [&](const QJsonObject &reply) {
                if (reply["received"_s].toString().toLongLong() != 2 * chunkBytes)
                    return;
                QCoreApplication::processEvents();
                wasTooEarly = session.logLines().contains("send end"_s);
                acknowledge(size);
            });

    sendChunks(session, 3, windowOf(3, false));

    WAIT_VERIFY(session.hasEnded());
    QVERIFY(!wasTooEarly);
    QCOMPARE(session.trace.count("fileTransProgress"_s), 3);
    QCOMPARE(session.logLines().constLast(), "send end"_s);
}

void TestWindow::goesOnFromAnOffset()
{
    Session session;
    QVERIFY(session.open());
    session.client.setWindow(2);
    TransferRules rules = windowOf(2);
    rules.offset = chunkBytes;
    const QByteArray contents = sendChunks(session, 4, rules);
    WAIT_VERIFY(session.hasEnded() && session.trace.count("finish"_s) == 1);
    QByteArray received;
    for (const QByteArray &chunk : session.printer.chunks())
        received += qUncompress(chunk);
    QVERIFY(received == contents.mid(chunkBytes));
}

void TestWindow::cancelsWithTwoChunksUnderWay()
{
    Session session;
    QVERIFY(session.open());

    actWithTwoUnderWay(session, [&] { session.client.cancel(); });

    WAIT_VERIFY(session.hasEnded() && session.trace.count("cancelFinished"_s) == 1);
    QCOMPARE(session.printer.messages("CANCEL_FILE"_s).size(), 1);
    QCOMPARE(session.printer.chunks().size(), 2);
    // Its acknowledgements would count for this one if they were still expected.
    sendChunks(session, 3, windowOf(2));
    WAIT_COMPARE(session.trace.count("finish"_s), 1);
    QCOMPARE(session.printer.chunks().size(), 5);
}

void TestWindow::closesWithTwoChunksUnderWay()
{
    Session session;
    QVERIFY(session.open());

    actWithTwoUnderWay(session, [&] { session.client.close(); });

    WAIT_VERIFY(session.hasEnded() && session.trace.count("pauseSuccess"_s) == 1);
    QCOMPARE(session.printer.chunks().size(), 2);
    session.client.openWithUrl(session.printer.url());
    WAIT_COMPARE(session.trace.count("connected"_s), 1);
    sendChunks(session, 3, windowOf(2));
    WAIT_COMPARE(session.trace.count("finish"_s), 1);
}

void TestWindow::isDeletedWithTwoChunksUnderWay()
{
    ScriptedPrinter printer;
    QTemporaryDir dir;
    const QByteArray contents = zytest::compressibleBytes(4 * chunkBytes);
    const QString path = zytest::writeFile(dir.filePath("m"_s), contents);
    auto client = std::make_unique<ZySslEchoClient>(printer.url());
    zytest::useThreads(*client);
    client->setWindow(2);
    printer.answerTransfers(windowOf(2, false));
    connect(client.get(), &ZySslEchoClient::connected, this,
            [&] { client->sendFile(path, "m"_s); });
    connect(&printer, &ScriptedPrinter::chunkReceived, this, [&] {
        if (printer.chunks().size() == 2)
            client.reset();
    });
    WAIT_VERIFY(!client);
    WAIT_COMPARE(printer.closeCodes().size(), 1);
    QCOMPARE(printer.chunks().size(), 2);
}

ZY_TEST(TestWindow)
#include "tst_window.moc"
