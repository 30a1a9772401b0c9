// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Both ends under valgrind's memcheck: a transfer with a resume, and one that is cancelled.

#include "messagegate.h"
#include "modelfiles.h"
#include "printerundertest.h"
#include "testprogram.h"

#include <QStandardPaths>
#include <QTest>

using namespace zytest;

class TestMemcheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void bothEndsAreCleanInATransferWithResumeAndCancel();

private:
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

void TestMemcheck::bothEndsAreCleanInATransferWithResumeAndCancel()
{
    PrinterUnderTest printer;
    QVERIFY(printer.start({}, m_memcheck));
    const QByteArray contents = randomBytes(5 * chunkBytes / 2);
    MessageGate gate(printer.host().port());
    gate.holdAfter(3);
    const auto resuming = printer.sendUpTo(gate, contents, {}, m_memcheck);
    QVERIFY(resuming);
    gate.open(); // drops the connection
    QCOMPARE(resuming->waitForEnding(), QStringLiteral("Sent"));
    QCOMPARE(resuming->resumedFrom(), chunkBytes);
    QCOMPARE(printer.host().events("dropped").size(), 1);
    QVERIFY(readFile(printer.pathOf(finishedName)) == contents);

    MessageGate secondGate(printer.host().port());
    secondGate.holdAfter(3);
    const auto cancelling = printer.sendUpTo(secondGate, contents, {}, m_memcheck);
    QVERIFY(cancelling);
    QVERIFY(cancelling->cancel());
    secondGate.release();
    QCOMPARE(cancelling->waitForEnding(), QStringLiteral("Cancelled"));
    QCOMPARE(printer.host().events("cancelled").size(), 1);
    printer.verifyNextJobSucceeds();
}

ZY_TEST(TestMemcheck)
#include "tst_memcheck.moc"
