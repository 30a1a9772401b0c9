// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A sender on a system that has no thread left for it. Alone, since a thread that has ended leaves
// its memory to the next.

#include "sending.h"
#include "testprogram.h"

#include <sys/resource.h>

using namespace zytest;

class TestSenderNoThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsWithAResult();
};

void TestSenderNoThread::endsWithAResult()
{
    Sending sending(QUrl(deadUrl()), "abc");
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_AS, &before), 0);
    const rlimit none{1, before.rlim_max}; // nothing more can be mapped, as a thread's stack is
    QCOMPARE(::setrlimit(RLIMIT_AS, &none), 0);
    sending.sender->start();
    QCOMPARE(::setrlimit(RLIMIT_AS, &before), 0);
    QCOMPARE(sending.finished.count(), 0);
    QVERIFY(sending.waitForEnd());
    QCOMPARE(sending.result().ending(), ZySendResult::Ending::NoConnection);
    QCOMPARE(sending.result().detail(), QStringLiteral("the system has no thread left"));
    QVERIFY(!sending.sender->canCancel());
}

ZY_TEST(TestSenderNoThread)
#include "tst_nothread.moc"
