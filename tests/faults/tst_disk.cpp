// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer whose disk is full or whose files are taken away under its hands.

#include "faultprocess.h"
#include "messagegate.h"
#include "modelfiles.h"
#include "rounds.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <unistd.h>

using namespace zytest;

namespace
{

const QString finishedName = QStringLiteral("part.bin");
const QString temporaryName = QStringLiteral("wifi_tranfer.tmp");

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

/// A command before the printer's that makes the rights of files count even for root.
QStringList boundByRights()
{
    if (::geteuid() != 0)
        return {};
    return {QStringLiteral("setpriv"),
            QStringLiteral("--bounding-set=-dac_override,-dac_read_search")};
}

bool works(QStringList command)
{
    command.append(QStringLiteral("true"));
    QProcess trial;
    trial.start(command.takeFirst(), command);
    return trial.waitForFinished(patience) && trial.error() == QProcess::UnknownError
        && trial.exitCode() == 0;
}

} // namespace

class TestDisk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sizeBeyondTheDiskIsRefused();
    void fullDiskNeverGivesAWrongFile();
    void transferGoesOnWhenTheDiskHasRoomAgain();
    void lastBytesThatDoNotFitAreNotAcknowledged();
    void cancelOnAFullDiskMakesRoom();
    void recordThatDoesNotFitStartsAgain_data();
    void recordThatDoesNotFitStartsAgain();

    void removedDirectoryFailsTheTransfer();
    void readOnlyDirectoryFailsTheTransfer();
    void replacedTemporaryFileFailsTheTransfer_data();
    void replacedTemporaryFileFailsTheTransfer();
    void obstacleInTheWayIsRefused_data();
    void obstacleInTheWayIsRefused();
    void lostTemporaryFileIsNotResumed_data();
    void lostTemporaryFileIsNotResumed();
    void temporaryFileLostRightAfterAResumeIsSentAgain();

private:
    void startHost(const QStringList &options = {}, const QStringList &wrapper = {});
    void startSmallDisk(qint64 bytes);
    QString file(const QByteArray &contents);
    QString received(const QString &name) const { return QDir(m_seenDirectory).filePath(name); }
    std::unique_ptr<SenderProcess> send(const QByteArray &contents,
                                        const QStringList &options = {});
    /// A sender that has got so far that message @p number has been passed on.
    std::unique_ptr<SenderProcess> sendUpTo(MessageGate &gate, int number,
                                            const QByteArray &contents);
    void verifyNextJobSucceeds();
    void obstruct(const QString &kind);

    std::unique_ptr<QTemporaryDir> m_local;
    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<HostProcess> m_host;
    QString m_seenDirectory; ///< the receive directory, from outside of the printer's namespace
};

void TestDisk::init()
{
    m_local = std::make_unique<QTemporaryDir>();
    m_directory = std::make_unique<QTemporaryDir>();
    m_seenDirectory = m_directory->path();
}

void TestDisk::cleanup()
{
    m_host.reset();
}

void TestDisk::startHost(const QStringList &options, const QStringList &wrapper)
{
    m_host = std::make_unique<HostProcess>(m_directory->path(), options, wrapper);
    QVERIFY(m_host->port() != 0);
}

void TestDisk::startSmallDisk(qint64 bytes)
{
    const QStringList disk = smallDisk(m_directory->path(), bytes);
    if (!works(disk))
        QSKIP("This system does not let us mount a small disk (unshare, mount, tmpfs)");
    startHost({}, disk);
    m_seenDirectory = QStringLiteral("/proc/%1/root%2").arg(m_host->pid()).arg(m_directory->path());
}

QString TestDisk::file(const QByteArray &contents)
{
    return writeFile(m_local->filePath(QString::number(contents.size())), contents);
}

std::unique_ptr<SenderProcess> TestDisk::send(const QByteArray &contents,
                                              const QStringList &options)
{
    const QStringList fixed{QStringLiteral("--stall"), QStringLiteral("700"),
                            QStringLiteral("--attempts"), QStringLiteral("4")};
    return std::make_unique<SenderProcess>(m_host->url(), file(contents), fixed + options);
}

std::unique_ptr<SenderProcess> TestDisk::sendUpTo(MessageGate &gate, int number,
                                                  const QByteArray &contents)
{
    gate.holdAfter(number);
    QSignalSpy reached(&gate, &MessageGate::reached);
    auto sender = std::make_unique<SenderProcess>(gate.url().toString(), file(contents));
    return reached.wait(patience) ? std::move(sender) : nullptr;
}

void TestDisk::verifyNextJobSucceeds()
{
    const QByteArray contents = randomBytes(50000, 99);
    const auto sender = send(contents);
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    QCOMPARE(m_host->events("finish").last().value(QLatin1String("digest")).toString(),
             digestOf(contents));
    QVERIFY(m_host->quit());
    QCOMPARE(m_host->exitCode(), 0);
}

// --- A full disk

void TestDisk::sizeBeyondTheDiskIsRefused()
{
    startHost({QStringLiteral("--file-limit"), QString::number(chunkBytes)});
    const auto sender = send(randomBytes(chunkBytes + 1));
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(sender->events("transError").size(), 1);
    QCOMPARE(sender->events("transError").first().value(QLatin1String("code")).toInt(), 2);
    verifyNextJobSucceeds();
}

void TestDisk::fullDiskNeverGivesAWrongFile()
{
    startSmallDisk(5 * chunkBytes / 2);
    const auto sender = send(randomBytes(4 * chunkBytes));
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(m_host->events("finish").size(), 0);
    verifyNextJobSucceeds();
}

void TestDisk::transferGoesOnWhenTheDiskHasRoomAgain()
{
    startSmallDisk(6 * chunkBytes);
    const QString ballast
        = writeFile(received(QStringLiteral("ballast")), QByteArray(7 * chunkBytes / 2, 'b'));
    const QByteArray contents = randomBytes(4 * chunkBytes + 1000);
    const auto sender = send(contents, {QStringLiteral("--attempts"), QStringLiteral("50")});
    // The first attempt has come to the file's end without arriving there.
    QVERIFY(sender->waitForEvents("reply"));
    QVERIFY(QFile::remove(ballast));
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    for (const QJsonObject &finished : m_host->events("finish"))
        QCOMPARE(finished.value(QLatin1String("digest")).toString(), digestOf(contents));
    verifyNextJobSucceeds();
}

void TestDisk::lastBytesThatDoNotFitAreNotAcknowledged()
{
    // Room for one page behind the first chunk, and the tail needs three.
    startSmallDisk(chunkBytes + 4096);
    const auto sender = send(randomBytes(chunkBytes + 10000));
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(m_host->events("finish").size(), 0);
    verifyNextJobSucceeds();
}

void TestDisk::cancelOnAFullDiskMakesRoom()
{
    startSmallDisk(3 * chunkBytes / 2);
    const auto sender = send(randomBytes(4 * chunkBytes),
                             {QStringLiteral("--cancel-after"), QStringLiteral("3")});
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    QCOMPARE(sender->events("cancelled").size(), 1);
    QCOMPARE(entriesOf(m_seenDirectory), QStringList());
    verifyNextJobSucceeds();
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
    startHost({QStringLiteral("--file-limit"), QString::number(contents.size() + room)});
    const auto sender = send(contents, {QStringLiteral("--drop-after"), QStringLiteral("1")});
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    const double offset
        = sender->events("attempt").last().value(QLatin1String("offset")).toDouble();
    QCOMPARE(offset > 0, resumes);
    QVERIFY(readFile(received(finishedName)) == contents);
    verifyNextJobSucceeds();
}

// --- Files taken away

void TestDisk::removedDirectoryFailsTheTransfer()
{
    startHost();
    MessageGate gate(m_host->port());
    const auto sender = sendUpTo(gate, 3, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(QDir(m_directory->path()).removeRecursively());
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(sender->events("finish").size(), 1);

    const auto refused = send(randomBytes(1000));
    QVERIFY(refused->waitForEnd());
    QCOMPARE(refused->events("transError").size(), 1);

    QVERIFY(QDir().mkdir(m_directory->path()));
    verifyNextJobSucceeds();
}

void TestDisk::readOnlyDirectoryFailsTheTransfer()
{
    if (!works(boundByRights() + QStringList{QStringLiteral("true")}))
        QSKIP("Running as root without setpriv: the rights of files do not count");
    startHost({}, boundByRights());
    MessageGate gate(m_host->port());
    const auto sender = sendUpTo(gate, 3, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(QFile::setPermissions(m_directory->path(), QFile::ReadOwner | QFile::ExeOwner));
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(sender->events("finish").size(), 1);

    QVERIFY(QFile::setPermissions(m_directory->path(),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    verifyNextJobSucceeds();
}

/// Puts something else in the temporary file's place.
void TestDisk::obstruct(const QString &kind)
{
    const QString path = received(temporaryName);
    QFile::remove(path);
    if (kind == QLatin1String("directory"))
        QVERIFY(QDir().mkdir(path));
    else if (kind == QLatin1String("dangling link"))
        QVERIFY(QFile::link(received(QStringLiteral("nowhere/at all")), path));
    else if (kind == QLatin1String("link to a file to be"))
        QVERIFY(QFile::link(received(QStringLiteral("new")), path));
}

void TestDisk::replacedTemporaryFileFailsTheTransfer_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("removed") << QString();
    QTest::newRow("directory") << QStringLiteral("directory");
    QTest::newRow("dangling link") << QStringLiteral("dangling link");
}

void TestDisk::replacedTemporaryFileFailsTheTransfer()
{
    QFETCH(QString, kind);
    startHost();
    MessageGate gate(m_host->port());
    const auto sender = sendUpTo(gate, 3, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    obstruct(kind);
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(m_host->events("finish").size(), 1);
    QVERIFY(!m_host->events("finish").first().value(QLatin1String("isThere")).toBool());

    QFile::remove(received(temporaryName));
    QDir().rmdir(received(finishedName)); // the directory has been renamed
    verifyNextJobSucceeds();
}

void TestDisk::obstacleInTheWayIsRefused_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("directory") << QStringLiteral("directory");
    QTest::newRow("dangling link") << QStringLiteral("dangling link");
}

void TestDisk::obstacleInTheWayIsRefused()
{
    QFETCH(QString, kind);
    startHost();
    obstruct(kind);
    const auto refused = send(randomBytes(1000));
    QVERIFY(refused->waitForEnd());
    QCOMPARE(refused->exitCode(), 1);
    QCOMPARE(refused->events("attempt").size(), 1); // refused at once, not stalled
    QCOMPARE(m_host->events("finish").size(), 0);

    QVERIFY(QFile::remove(received(temporaryName)) || QDir().rmdir(received(temporaryName)));
    verifyNextJobSucceeds();
}

void TestDisk::lostTemporaryFileIsNotResumed_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("removed") << QString();
    QTest::newRow("link to a file to be") << QStringLiteral("link to a file to be");
}

/// What was received is gone, so a record of it must not be left behind.
void TestDisk::lostTemporaryFileIsNotResumed()
{
    QFETCH(QString, kind);
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    startHost();
    MessageGate gate(m_host->port());
    const auto sender = sendUpTo(gate, 3, contents);
    QVERIFY(sender);
    obstruct(kind);
    gate.open(); // drops the connection
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    QVERIFY(readFile(received(finishedName)) == contents);
    verifyNextJobSucceeds();
}

void TestDisk::temporaryFileLostRightAfterAResumeIsSentAgain()
{
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    startHost();
    {
        MessageGate gate(m_host->port());
        const auto killed = sendUpTo(gate, 3, contents);
        QVERIFY(killed);
        killed->kill();
    }
    QVERIFY(m_host->waitForEvents("dropped"));
    MessageGate gate(m_host->port());
    const auto sender = sendUpTo(gate, 1, contents);
    QVERIFY(sender);
    QVERIFY(QFile::remove(received(temporaryName)));
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    for (const QJsonObject &finished : m_host->events("finish"))
        QCOMPARE(finished.value(QLatin1String("digest")).toString(), digestOf(contents));
    verifyNextJobSucceeds();
}

QTEST_GUILESS_MAIN(TestDisk)
#include "tst_disk.moc"
