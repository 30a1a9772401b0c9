// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer whose files are taken away under its hands.

#include "messagegate.h"
#include "modelfiles.h"
#include "printerundertest.h"
#include "rounds.h"
#include "testprogram.h"

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
    gate.holdAfter(3);
    const auto sender = m_printer->sendUpTo(gate, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(QDir(m_printer->directory()).removeRecursively());
    gate.release();
    QCOMPARE(sender->waitForEnding(), QStringLiteral("CheckFailed"));

    const auto refused = m_printer->send(randomBytes(1000));
    QCOMPARE(refused->waitForEnding(), QStringLiteral("PrinterStorage"));

    QVERIFY(QDir().mkdir(m_printer->directory()));
    m_printer->verifyNextJobSucceeds();
}

void TestTakenAway::readOnlyDirectoryFailsTheTransfer()
{
    if (!works(boundByRights()))
        QSKIP("Running as root without setpriv: the rights of files do not count");
    QVERIFY(m_printer->start({}, boundByRights()));
    MessageGate gate(m_printer->host().port());
    gate.holdAfter(3);
    const auto sender = m_printer->sendUpTo(gate, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    QVERIFY(QFile::setPermissions(m_printer->directory(), QFile::ReadOwner | QFile::ExeOwner));
    gate.release();
    QCOMPARE(sender->waitForEnding(), QStringLiteral("CheckFailed"));

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
    gate.holdAfter(3);
    const auto sender = m_printer->sendUpTo(gate, randomBytes(2 * chunkBytes));
    QVERIFY(sender);
    obstruct(kind);
    gate.release();
    QCOMPARE(sender->waitForEnding(), QStringLiteral("CheckFailed"));
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
    QCOMPARE(refused->waitForEnding(), QStringLiteral("PrinterStorage"));
    QCOMPARE(refused->events("retrying").size(), 0); // refused at once, not stalled
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
    gate.holdAfter(3);
    // A printer that finds the link gives a reply that begins nothing.
    const auto sender
        = m_printer->sendUpTo(gate, contents, {QStringLiteral("--limit"), QStringLiteral("500")});
    QVERIFY(sender);
    obstruct(kind);
    gate.open(); // drops the connection
    QCOMPARE(sender->waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(sender->events("resumed").size(), 0);
    QCOMPARE(sender->events("restarted").size(), 1);
    QVERIFY(readFile(m_printer->pathOf(finishedName)) == contents);
    m_printer->verifyNextJobSucceeds();
}

void TestTakenAway::temporaryFileLostRightAfterAResumeIsSentAgain()
{
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    QVERIFY(m_printer->start());
    MessageGate gate(m_printer->host().port());
    gate.holdAfter(3);
    const auto killed = m_printer->sendUpTo(gate, contents);
    QVERIFY(killed);
    killed->kill();
    gate.open();
    QVERIFY(m_printer->host().waitForEvents("dropped"));

    MessageGate secondGate(m_printer->host().port());
    secondGate.holdAfter(1);
    const auto second = m_printer->sendUpTo(secondGate, contents);
    QVERIFY(second);
    QVERIFY(QFile::remove(m_printer->pathOf(temporaryName)));
    secondGate.release();
    QCOMPARE(second->waitForEnding(), QStringLiteral("PrinterStorage"));
    QCOMPARE(second->resumedFrom(), chunkBytes);
    QVERIFY(m_printer->host().waitForEvents("dropped", 2));

    const auto third = m_printer->send(contents);
    QCOMPARE(third->waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(third->events("resumed").size(), 0);
    QCOMPARE(m_printer->host().events("finish").size(), 1);
    QVERIFY(readFile(m_printer->pathOf(finishedName)) == contents);
    m_printer->verifyNextJobSucceeds();
}

ZY_TEST(TestTakenAway)
#include "tst_takenaway.moc"
