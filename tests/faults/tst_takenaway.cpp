// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer whose files are taken away under its hands.

#include "messagegate.h"
#include "modelfiles.h"
#include "printerundertest.h"
#include "rounds.h"

#include <QFileInfo>
#include <QTest>

#include <unistd.h>

using namespace zytest;

namespace
{

/// A command before the printer's that makes the rights of files count even for root.
QStringList boundByRights()
{
    if (::geteuid() != 0)
        return {};
    return {QStringLiteral("setpriv"),
            QStringLiteral("--bounding-set=-dac_override,-dac_read_search")};
}

/// Options of a sender that soon tries again.
const QStringList restless{QStringLiteral("--stall"), QStringLiteral("3000")};

} // namespace

class TestTakenAway : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_printer = std::make_unique<PrinterUnderTest>(); }
    void cleanup() { m_printer.reset(); }

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
    void obstruct(const QString &kind);

    std::unique_ptr<PrinterUnderTest> m_printer;
};

void TestTakenAway::removedDirectoryFailsTheTransfer()
{
    QVERIFY(m_printer->start());
    MessageGate gate(m_printer->host().port());
    const auto sender = m_printer->sendUpTo(gate, 3, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(QDir(m_printer->directory()).removeRecursively());
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(sender->events("finish").size(), 1);

    const auto refused = m_printer->send(randomBytes(1000));
    QVERIFY(refused->waitForEnd());
    QCOMPARE(refused->events("transError").size(), 1);

    QVERIFY(QDir().mkdir(m_printer->directory()));
    m_printer->verifyNextJobSucceeds();
}

void TestTakenAway::readOnlyDirectoryFailsTheTransfer()
{
    if (!works(boundByRights()))
        QSKIP("Running as root without setpriv: the rights of files do not count");
    QVERIFY(m_printer->start({}, boundByRights()));
    MessageGate gate(m_printer->host().port());
    const auto sender = m_printer->sendUpTo(gate, 3, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(QFile::setPermissions(m_printer->directory(), QFile::ReadOwner | QFile::ExeOwner));
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(sender->events("finish").size(), 1);

    QVERIFY(QFile::setPermissions(m_printer->directory(),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    m_printer->verifyNextJobSucceeds();
}

/// Puts something else in the temporary file's place.
void TestTakenAway::obstruct(const QString &kind)
{
    const QString path = m_printer->pathOf(temporaryName);
    QFile::remove(path);
    if (kind == QLatin1String("directory"))
        QVERIFY(QDir().mkdir(path));
    else if (kind == QLatin1String("dangling link"))
        QVERIFY(QFile::link(m_printer->pathOf(QStringLiteral("nowhere/at all")), path));
    else if (kind == QLatin1String("link to a file to be"))
        QVERIFY(QFile::link(m_printer->pathOf(QStringLiteral("new")), path));
}

void TestTakenAway::replacedTemporaryFileFailsTheTransfer_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("removed") << QString();
    QTest::newRow("directory") << QStringLiteral("directory");
    QTest::newRow("dangling link") << QStringLiteral("dangling link");
}

void TestTakenAway::replacedTemporaryFileFailsTheTransfer()
{
    QFETCH(QString, kind);
    QVERIFY(m_printer->start());
    MessageGate gate(m_printer->host().port());
    const auto sender = m_printer->sendUpTo(gate, 3, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    obstruct(kind);
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 1);
    QCOMPARE(m_printer->host().events("finish").size(), 1);
    QVERIFY(!m_printer->host().events("finish").first().value(QLatin1String("isThere")).toBool());

    QFile::remove(m_printer->pathOf(temporaryName));
    QDir().rmdir(m_printer->pathOf(finishedName)); // the directory has been renamed
    m_printer->verifyNextJobSucceeds();
}

void TestTakenAway::obstacleInTheWayIsRefused_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("directory") << QStringLiteral("directory");
    QTest::newRow("dangling link") << QStringLiteral("dangling link");
}

void TestTakenAway::obstacleInTheWayIsRefused()
{
    QFETCH(QString, kind);
    QVERIFY(m_printer->start());
    obstruct(kind);
    const auto refused = m_printer->send(randomBytes(1000));
    QVERIFY(refused->waitForEnd());
    QCOMPARE(refused->exitCode(), 1);
    QCOMPARE(refused->events("attempt").size(), 1); // refused at once, not stalled
    QCOMPARE(m_printer->host().events("finish").size(), 0);

    QVERIFY(QFile::remove(m_printer->pathOf(temporaryName))
            || QDir().rmdir(m_printer->pathOf(temporaryName)));
    m_printer->verifyNextJobSucceeds();
}

void TestTakenAway::lostTemporaryFileIsNotResumed_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("removed") << QString();
    QTest::newRow("link to a file to be") << QStringLiteral("link to a file to be");
}

/// What was received is gone, so a record of it must not be left behind.
void TestTakenAway::lostTemporaryFileIsNotResumed()
{
    QFETCH(QString, kind);
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    QVERIFY(m_printer->start());
    MessageGate gate(m_printer->host().port());
    // A printer that finds the link answers in a way that no sender understands, so it has to
    // stall.
    const auto sender = m_printer->sendUpTo(gate, 3, contents, restless);
    QVERIFY(sender);
    obstruct(kind);
    gate.open(); // drops the connection
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    QVERIFY(readFile(m_printer->pathOf(finishedName)) == contents);
    m_printer->verifyNextJobSucceeds();
}

void TestTakenAway::temporaryFileLostRightAfterAResumeIsSentAgain()
{
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    QVERIFY(m_printer->start());
    {
        MessageGate gate(m_printer->host().port());
        const auto killed = m_printer->sendUpTo(gate, 3, contents);
        QVERIFY(killed);
        killed->kill();
    }
    QVERIFY(m_printer->host().waitForEvents("dropped"));
    MessageGate gate(m_printer->host().port());
    const auto sender = m_printer->sendUpTo(gate, 1, contents, restless);
    QVERIFY(sender);
    QVERIFY(QFile::remove(m_printer->pathOf(temporaryName)));
    gate.release();
    QVERIFY(sender->waitForEnd());
    QCOMPARE(sender->exitCode(), 0);
    for (const QJsonObject &finished : m_printer->host().events("finish"))
        QCOMPARE(finished.value(QLatin1String("digest")).toString(), digestOf(contents));
    m_printer->verifyNextJobSucceeds();
}

QTEST_GUILESS_MAIN(TestTakenAway)
#include "tst_takenaway.moc"
