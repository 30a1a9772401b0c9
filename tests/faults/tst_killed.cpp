// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// kill -9 of either end at every step of a transfer; a new process carries on.

#include "faultprocess.h"
#include "messagegate.h"
#include "modelfiles.h"
#include "rounds.h"
#include "testprogram.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <array>

using namespace zytest;

namespace
{

constexpr int chunkCount = 3;
constexpr qint64 fileSize = (chunkCount - 1) * mebibyte + mebibyte / 2;

/// The exchange of a file of three chunks. Chunks have the even numbers but for the first.
constexpr std::array<const char *, 9> messages{
    "START_FILE",   "START_FILE reply", "chunk 1",      "START_DATA 1", "chunk 2",
    "START_DATA 2", "chunk 3",          "START_DATA 3", "CHECK_DATA",
};
constexpr int lastMessage = static_cast<int>(messages.size()) - 1;
constexpr int firstChunk = 2;
constexpr int lastChunk = 6;

void addSteps()
{
    QTest::addColumn<int>("message");
    QTest::addColumn<bool>("after");
    for (int number = 0; number <= lastMessage; ++number) {
        const char *name = messages[static_cast<std::size_t>(number)];
        QTest::addRow("before %s", name) << number << false;
        QTest::addRow("after %s", name) << number << true;
    }
}

/// Half of the senders run without GLib's event loop: each state is reached once after a message
/// and once before the next one.
QStringList eventLoop(bool after)
{
    return after ? QStringList{QStringLiteral("env"), QStringLiteral("QT_NO_GLIB=1")}
                 : QStringList();
}

} // namespace

class TestKilled : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void newSenderResumesAfterTheSenderDied_data() { addSteps(); }
    void newSenderResumesAfterTheSenderDied();
    void newPrinterTakesTheFileFromTheStart_data() { addSteps(); }
    void newPrinterTakesTheFileFromTheStart();

private:
    void verifyArrived(HostProcess &host, const QTemporaryDir &directory);

    QTemporaryDir m_directory;
    QByteArray m_contents;
    QString m_file;
};

void TestKilled::initTestCase()
{
    m_file = m_directory.filePath(QStringLiteral("local.bin"));
    m_contents = compressibleBytes(fileSize);
    writeFile(m_file, m_contents);
}

void TestKilled::verifyArrived(HostProcess &host, const QTemporaryDir &directory)
{
    QVERIFY(readFile(directory.filePath(QStringLiteral("part.bin"))) == m_contents);
    QCOMPARE(entriesOf(directory.path()), QStringList{QStringLiteral("part.bin")});
    QVERIFY(host.quit());
    QCOMPARE(host.exitCode(), 0);
}

void TestKilled::newSenderResumesAfterTheSenderDied()
{
    QFETCH(int, message);
    QFETCH(bool, after);
    const QTemporaryDir directory;
    HostProcess host(directory.path());
    QVERIFY(host.port() != 0);
    MessageGate gate(host.port());
    if (after)
        gate.holdAfter(message);
    else
        gate.holdBefore(message);
    QSignalSpy reached(&gate, &MessageGate::reached);

    SenderProcess killed(gate.url().toString(), m_file, {}, eventLoop(after));
    QVERIFY(reached.wait(patience));
    killed.kill();

    gate.open();
    const int delivered = after ? message : message - 1;
    const int chunks = delivered < firstChunk ? 0 : qMin(delivered, lastChunk) / 2;
    // Before that the printer would say that it is busy.
    const bool isReceiving = delivered >= 0 && chunks < chunkCount;
    QVERIFY(!isReceiving || host.waitForEvents("dropped"));
    SenderProcess second(gate.url().toString(), m_file, {}, eventLoop(after));
    QCOMPARE(second.waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(second.resumedFrom(), chunks == chunkCount ? 0 : chunks * mebibyte);
    QCOMPARE(host.events("finish").size(), chunks == chunkCount ? 2 : 1);
    verifyArrived(host, directory);
}

void TestKilled::newPrinterTakesTheFileFromTheStart()
{
    QFETCH(int, message);
    QFETCH(bool, after);
    const QTemporaryDir directory;
    HostProcess killed(directory.path());
    QVERIFY(killed.port() != 0);
    MessageGate gate(killed.port());
    if (after)
        gate.holdAfter(message);
    else
        gate.holdBefore(message);
    QSignalSpy reached(&gate, &MessageGate::reached);

    // The second printer may take long to start.
    SenderProcess sender(gate.url().toString(), m_file,
                         {QStringLiteral("--retries"), QStringLiteral("1000")}, eventLoop(after));
    QVERIFY(reached.wait(patience));
    killed.kill();

    HostProcess second(directory.path());
    QVERIFY(second.port() != 0);
    gate.setPrinterPort(second.port());
    gate.open();
    QCOMPARE(sender.waitForEnding(), QStringLiteral("Sent"));
    // The sender that has heard CHECK_DATA is done; any other starts again, since nothing but an
    // orderly end of the connection leaves a resume record.
    const bool isDone = after && message == lastMessage;
    QCOMPARE(second.events("finish").size(), isDone ? 0 : 1);
    QCOMPARE(sender.events("resumed").size(), 0);
    const bool isRepeated = sender.events("progress").size() > chunkCount;
    QCOMPARE(sender.events("restarted").size(), isRepeated ? 1 : 0);
    verifyArrived(second, directory);
}

ZY_TEST(TestKilled)
#include "tst_killed.moc"
