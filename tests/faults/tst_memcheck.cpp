// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Both ends under valgrind's memcheck: a transfer with a resume, and one that is cancelled.

#include "faultprocess.h"
#include "modelfiles.h"
#include "rounds.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace zytest;

class TestMemcheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void bothEndsAreCleanInATransferWithResumeAndCancel();

private:
    void verifyClean(const HostProcess &host, const QString &file, const QStringList &options);

    const QStringList m_memcheck{
        QStringLiteral("valgrind"),
        QStringLiteral("--quiet"),
        QStringLiteral("--error-exitcode=99"),
        QStringLiteral("--leak-check=full"),
        QStringLiteral("--errors-for-leak-kinds=definite,possible"),
        QStringLiteral("--show-leak-kinds=definite,possible"),
        QStringLiteral("--gen-suppressions=all"),
        QStringLiteral("--suppressions=" ZY_SUPPRESSIONS),
    };
};

void TestMemcheck::initTestCase()
{
    if (QStandardPaths::findExecutable(QStringLiteral("valgrind")).isEmpty())
        QSKIP("valgrind is not installed");
}

void TestMemcheck::verifyClean(const HostProcess &host, const QString &file,
                               const QStringList &options)
{
    SenderProcess sender(host.url(), file, options, m_memcheck);
    QVERIFY(sender.waitForEnd());
    QCOMPARE(sender.exitCode(), 0);
}

void TestMemcheck::bothEndsAreCleanInATransferWithResumeAndCancel()
{
    const QTemporaryDir directory;
    const QTemporaryDir local;
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    const QString file = writeFile(local.filePath(QStringLiteral("local.bin")), contents);
    HostProcess host(directory.path(), {}, m_memcheck);
    QVERIFY(host.port() != 0);

    verifyClean(host, file, {QStringLiteral("--drop-after"), QStringLiteral("1")});
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(host.events("dropped").size(), 1);
    QVERIFY(readFile(directory.filePath(QStringLiteral("part.bin"))) == contents);
    verifyClean(host, file, {QStringLiteral("--cancel-after"), QStringLiteral("1")});
    QCOMPARE(host.events("cancelled").size(), 1);

    QVERIFY(host.quit());
    QCOMPARE(host.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestMemcheck)
#include "tst_memcheck.moc"
