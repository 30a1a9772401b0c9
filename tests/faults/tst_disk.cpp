// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer whose disk is full.

#include "modelfiles.h"
#include "printerundertest.h"
#include "rounds.h"

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

/// Options of a sender that soon gives up, where it has no chance.
const QStringList impatient{QStringLiteral("--stall"), QStringLiteral("1500"),
                            QStringLiteral("--attempts"), QStringLiteral("2")};

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
    m_printer->setSeenDirectory(
        QStringLiteral("/proc/%1/root%2").arg(m_printer->host().pid()).arg(m_printer->directory()));
}

void TestDisk::sizeBeyondTheDiskIsRefused()
{
    QVERIFY(m_printer->start({QStringLiteral("--file-limit"), QString::number(chunkBytes)}));
    const auto sender = m_printer->send(randomBytes(chunkBytes + 1));
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(sender->events("transError").size(), 1);
    QCOMPARE(sender->events("transError").first().value(QLatin1String("code")).toInt(), 2);
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::fullDiskNeverGivesAWrongFile()
{
    startSmallDisk(5 * chunkBytes / 2);
    if (!m_printer->isStarted())
        return;
    const auto sender = m_printer->send(randomBytes(4 * chunkBytes), impatient);
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
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
    const auto sender
        = m_printer->send(contents, {QStringLiteral("--stall"), QStringLiteral("3000")});
    // The first attempt has come to the file's end without arriving there.
    QVERIFY(sender->waitForEvents("reply"));
    QVERIFY(QFile::remove(ballast));
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    for (const QJsonObject &finished : m_printer->host().events("finish"))
        QCOMPARE(finished.value(QLatin1String("digest")).toString(), digestOf(contents));
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::lastBytesThatDoNotFitAreNotAcknowledged()
{
    // Room for one page behind the first chunk, and the tail needs three.
    startSmallDisk(chunkBytes + 4096);
    if (!m_printer->isStarted())
        return;
    const auto sender = m_printer->send(randomBytes(chunkBytes + 10000), impatient);
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(m_printer->host().events("finish").size(), 0);
    m_printer->verifyNextJobSucceeds();
}

void TestDisk::cancelOnAFullDiskMakesRoom()
{
    startSmallDisk(3 * chunkBytes / 2);
    if (!m_printer->isStarted())
        return;
    const auto sender = m_printer->send(randomBytes(4 * chunkBytes),
                                        {QStringLiteral("--cancel-after"), QStringLiteral("3")});
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    QCOMPARE(sender->events("cancelled").size(), 1);
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
    const auto sender
        = m_printer->send(contents, {QStringLiteral("--drop-after"), QStringLiteral("1")});
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    const double offset
        = sender->events("attempt").last().value(QLatin1String("offset")).toDouble();
    QCOMPARE(offset > 0, resumes);
    QVERIFY(readFile(m_printer->pathOf(finishedName)) == contents);
    m_printer->verifyNextJobSucceeds();
}

QTEST_GUILESS_MAIN(TestDisk)
#include "tst_disk.moc"
