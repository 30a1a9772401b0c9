// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Several data messages under way at once: what a server announces and what it does with them.

#include "modelfiles.h"
#include "rawpeer.h"
#include "requests.h"
#include "testprinter.h"
#include "testprogram.h"

#include <QTest>

using namespace zytest;

namespace
{

const QString modelName = QStringLiteral("model.bin");

ZyServerOptions windowOf(int chunks)
{
    ZyServerOptions options = ZyServerOptions::hardened();
    options.setWindow(chunks);
    return options;
}

/// Offers @p contents and returns the printer's answer.
QJsonObject offer(RawPeer &peer, const QByteArray &contents)
{
    QJsonObject request = startFile(modelName, contents.size());
    request.insert(QStringLiteral("window"), 2);
    peer.send(request);
    return peer.take();
}

/// Offers @p contents once more when the connection has ended, and sends what the printer does not
/// hold: all after the first @p held bytes. True when the file is then there, byte for byte.
bool arrivesWhenResumed(const TestPrinter &printer, const QByteArray &contents, int &held)
{
    if (!printer.waitForConnections(0))
        return false;
    RawPeer peer(printer.port());
    held = offer(peer, contents)[QStringLiteral("offset")].toString().toInt();
    const auto missing = chunksOf(contents).mid(held / chunkBytes);
    for (const QByteArray &chunk : missing)
        peer.sendChunk(chunk);
    constexpr int verdict = 1;
    return peer.waitForReplies(int(missing.size()) + verdict)
        && readFile(printer.path(modelName)) == contents;
}

} // namespace

class TestServerWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void announcesWhatItsHostAskedFor_data();
    void announcesWhatItsHostAskedFor();
    void answersEachOfManyChunksInTurn();
    void resumesBehindWhatWasUnderWay();
    void losesNothingAfterAChunkThatItCannotRead();
    void ignoresWhatWasUnderWayAtACancel();
};

void TestServerWindow::announcesWhatItsHostAskedFor_data()
{
    QTest::addColumn<int>("window");
    QTest::addColumn<QJsonValue>("announced");
    QTest::newRow("none") << 0 << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("one") << 1 << QJsonValue(QJsonValue::Undefined);
    QTest::newRow("two") << 2 << QJsonValue(2);
    QTest::newRow("many") << 16 << QJsonValue(16);
}

void TestServerWindow::announcesWhatItsHostAskedFor()
{
    QFETCH(const int, window);
    QFETCH(const QJsonValue, announced);
    const QString key = QStringLiteral("window");
    const QByteArray contents = randomBytes(2 * chunkBytes);
    TestPrinter printer(windowOf(window));
    {
        RawPeer peer(printer.port());
        QCOMPARE(offer(peer, contents).value(key), announced);
        RawPeer second(printer.port());
        QCOMPARE(offer(second, contents).value(key), QJsonValue(QJsonValue::Undefined));
        peer.sendChunk(contents.left(chunkBytes));
        peer.take();
    }
    QVERIFY(printer.waitForConnections(0));
    RawPeer peer(printer.port());
    const QJsonObject resumed = offer(peer, contents);
    QCOMPARE(resumed[QStringLiteral("offset")], QString::number(chunkBytes));
    QCOMPARE(resumed.value(key), announced);

    TestPrinter deployed(windowOf(window));
    RawPeer slicer(deployed.port());
    slicer.send(startFile(modelName, 5));
    QCOMPARE(slicer.take(), accepted(modelName, QStringLiteral("5")));
}

void TestServerWindow::answersEachOfManyChunksInTurn()
{
    const QByteArray contents = randomBytes(5 * chunkBytes - 3);
    TestPrinter printer(windowOf(2));
    RawPeer peer(printer.port());
    offer(peer, contents);
    for (const QByteArray &chunk : chunksOf(contents))
        peer.sendChunk(chunk);
    for (qint64 received = chunkBytes; received < contents.size(); received += chunkBytes)
        QCOMPARE(peer.take(), startData(contents.size(), received));
    QCOMPARE(peer.take(), startData(contents.size(), contents.size()));
    QCOMPARE(peer.take(), checkData(1));
    QVERIFY(readFile(printer.path(modelName)) == contents);
}

void TestServerWindow::resumesBehindWhatWasUnderWay()
{
    const QByteArray contents = randomBytes(4 * chunkBytes);
    const auto chunks = chunksOf(contents);
    TestPrinter printer(windowOf(2));
    {
        RawPeer peer(printer.port());
        offer(peer, contents);
        peer.sendChunk(chunks[0]);
        peer.sendChunk(chunks[1]);
        QVERIFY(peer.waitForReplies(1));
    }
    int held = 0;
    QVERIFY(arrivesWhenResumed(printer, contents, held));
    QVERIFY(held == chunkBytes || held == 2 * chunkBytes);
}

void TestServerWindow::losesNothingAfterAChunkThatItCannotRead()
{
    const QByteArray contents = randomBytes(4 * chunkBytes);
    const auto chunks = chunksOf(contents);
    TestPrinter printer(windowOf(2));
    {
        RawPeer peer(printer.port());
        offer(peer, contents);
        peer.sendChunk(chunks[0]);
        peer.sendBinary("no stream at all");
        peer.sendChunk(chunks[2]); // it was under way already
        QCOMPARE(peer.take(), startData(contents.size(), chunkBytes));
        QCOMPARE(peer.take(), startData(contents.size(), chunkBytes, 2));
        QVERIFY(peer.waitForReplies(1));
    }
    int held = 0;
    QVERIFY(arrivesWhenResumed(printer, contents, held));
    QCOMPARE(held, chunkBytes);
}

void TestServerWindow::ignoresWhatWasUnderWayAtACancel()
{
    const QByteArray contents = randomBytes(4 * chunkBytes);
    TestPrinter printer(windowOf(2));
    RawPeer peer(printer.port());
    offer(peer, contents);
    peer.sendChunk(contents.left(chunkBytes));
    peer.send(QByteArrayLiteral(R"({"cmd":"CANCEL_FILE"})"));
    peer.sendChunk(contents.left(chunkBytes));
    QCOMPARE(peer.take(), startData(contents.size(), chunkBytes));
    QCOMPARE(peer.take()[QStringLiteral("cmd")], QStringLiteral("CANCEL_FILE"));
    QVERIFY(peer.expectNothing());
    QCOMPARE(entriesOf(printer.dir()), QStringList());
}

ZY_TEST(TestServerWindow)
#include "tst_window.moc"
