// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer whose disk is full.

#include "messagegate.h"
#include "modelfiles.h"
#include "printerundertest.h"
#include "rounds.h"
#include "testprogram.h"

#include <QFile>
#include <QTest>

using namespace zytest;

namespace
{

/// A command before the printer's that gives it a small disk of its own at @p directory.
QStringList smallDisk(const QString &directory, qint64 bytes)
{
    return {
        QStringLiteral("unshare"),
        QStringLiteral("--map-root-user"),
        QStringLiteral("--mount"),
        QStringLiteral("sh"),
        QStringLiteral("-c"),
        QStringLiteral("mount -t tmpfs -o size=%1 none \"$1\" && shift && exec \"$@\"").arg(bytes),
        QStringLiteral("sh"),
        directory};
}

/// Bytes that @p sender knows the printer to hold.
int acknowledged(const SenderProcess &sender)
{
    return sender.result().value(QLatin1String("bytes")).toInt();
}

} // namespace

class TestDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_printer = std::make_unique<PrinterUnderTest>(); }
    void cleanup() { m_printer.reset(); }

    void sizeBeyondTheDiskIsRefused();
    void fullDiskNeverGivesAWrongFile();
    void transferGoesOnWhenTheDiskHasRoomAgain();
    void lastBytesThatDoNotFitAreNotAcknowledged();
    void cancelOnAFullDiskMakesRoom();
    void recordThatDoesNotFitStartsAgain_data();
    void recordThatDoesNotFitStartsAgain();

private:
    void startSmallDisk(qint64 bytes);

    std::unique_ptr<PrinterUnderTest> m_printer;
};

void TestDisk::startSmallDisk(qint64 bytes)
{
    const QStringList disk = smallDisk(m_printer->directory(), bytes);
    if (!works(disk))
        QSKIP("This system does not let us mount a small disk (unshare, mount, tmpfs)");
    QVERIFY(m_printer->start({}, disk));
    m_printer->setSeenDirectory(QStringLiteral("/proc/%1/root%2")
                                    .arg(m_printer->host().processId())
                                    .arg(m_printer->directory()));
}

void TestDisk::sizeBeyondTheDiskIsRefused()
{
    QVERIFY(m_printer->start({QStringLiteral("--file-limit"), QString::number(chunkBytes)}));
    const auto sender = m_printer->send(randomBytes(chunkBytes + 1));
    QCOMPARE(sender->waitForEnding(), QStringLiteral("PrinterStorage"));
    QCOMPARE(acknowledged(*sender), 0);
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::fullDiskNeverGivesAWrongFile()
{
    startSmallDisk(5 * chunkBytes / 2);
    if (!m_printer->isStarted())
        return;
    const auto sender = m_printer->send(randomBytes(4 * chunkBytes));
    QCOMPARE(sender->waitForEnding(), QStringLiteral("PrinterStorage"));
    QCOMPARE(acknowledged(*sender), 2 * chunkBytes);
    QCOMPARE(m_printer->host().events("finish").size(), 0);
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::transferGoesOnWhenTheDiskHasRoomAgain()
{
    startSmallDisk(6 * chunkBytes);
    if (!m_printer->isStarted())
        return;
    const QString ballast = writeFile(m_printer->pathOf(QStringLiteral("ballast")),
                                      QByteArray(7 * chunkBytes / 2, 'b'));
    const QByteArray contents = randomBytes(4 * chunkBytes + 1000);
    MessageGate gate(m_printer->host().port());
    // Half of the third chunk has been written, and the sender does not know.
    gate.holdBefore(7);
    const auto sender = m_printer->sendUpTo(gate, contents);
    QVERIFY(sender);
    QVERIFY(QFile::remove(ballast));
    gate.release();
    QCOMPARE(sender->waitForEnding(), QStringLiteral("PrinterStorage"));
    QCOMPARE(acknowledged(*sender), 2 * chunkBytes);

    QVERIFY(m_printer->host().waitForEvents("dropped"));
    const auto second = m_printer->send(contents);
    QCOMPARE(second->waitForEnding(), QStringLiteral("Sent"));
    QVERIFY(second->resumedFrom() > 2 * chunkBytes);
    QCOMPARE(m_printer->host().events("finish").size(), 1);
    QVERIFY(readFile(m_printer->pathOf(finishedName)) == contents);
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::lastBytesThatDoNotFitAreNotAcknowledged()
{
    // Room for one page behind the first chunk, and the tail needs three.
    startSmallDisk(chunkBytes + 4096);
    if (!m_printer->isStarted())
        return;
    const auto sender = m_printer->send(randomBytes(chunkBytes + 10000));
    QCOMPARE(sender->waitForEnding(), QStringLiteral("PrinterStorage"));
    QCOMPARE(acknowledged(*sender), chunkBytes);
    QCOMPARE(m_printer->host().events("finish").size(), 0);
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::cancelOnAFullDiskMakesRoom()
{
    startSmallDisk(3 * chunkBytes / 2);
    if (!m_printer->isStarted())
        return;
    MessageGate gate(m_printer->host().port());
    // Half of the second chunk has been written, and the sender does not know.
    gate.holdBefore(5);
    const auto sender = m_printer->sendUpTo(gate, randomBytes(4 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(sender->cancel());
    gate.release();
    QCOMPARE(sender->waitForEnding(), QStringLiteral("Cancelled"));
    QVERIFY(sender->result().value(QLatin1String("isPartDeleted")).toBool());
    QCOMPARE(entriesOf(m_printer->pathOf(QString())), QStringList());
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::recordThatDoesNotFitStartsAgain_data()
{
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("resumes");
    QTest::newRow("nothing fits") << 0 << false;
    QTest::newRow("the size") << 8 << false;
    QTest::newRow("the name's length") << 20 << false;
    QTest::newRow("all but the key") << 36 << false;
    QTest::newRow("all but a byte") << 55 << false;
    QTest::newRow("all") << 56 << true;
}

void TestDisk::recordThatDoesNotFitStartsAgain()
{
    QFETCH(int, room);
    QFETCH(bool, resumes);
    // The file's last four bytes give a key of eight digits.
    const QByteArray contents = randomBytes(2 * chunkBytes + 1000) + QByteArray("\x78\x56\x34\x12");
    QVERIFY(m_printer->start(
        {QStringLiteral("--file-limit"), QString::number(contents.size() + room)}));
    MessageGate gate(m_printer->host().port());
    gate.holdAfter(3);
    const auto sender = m_printer->sendUpTo(gate, contents);
    QVERIFY(sender);
    gate.open(); // drops the connection
    QCOMPARE(sender->waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(sender->resumedFrom(), resumes ? chunkBytes : 0);
    QCOMPARE(sender->events("restarted").size(), resumes ? 0 : 1);
    QVERIFY(readFile(m_printer->pathOf(finishedName)) == contents);
    m_printer->verifyNextJobSucceeds();
}

ZY_TEST(TestDisk)
#include "tst_disk.moc"
