// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The pool of threads: it runs all jobs, in as many threads as asked for, and ends.

#include "testprogram.h"
#include "workerpool.h"

#include <QTest>

#include <atomic>
#include <future>
#include <set>

#ifdef Q_OS_LINUX
#include <pthread.h>
#endif

using zyws::WorkerPool;

class TestWorkerPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsEveryJob();
    void runsNoMoreAtOnceThanAskedFor();
    void runsAsManyAtOnceAsAskedFor();
    void keepsItsThread();
    void runsWhatWaitsBeforeItEnds();
    void beginsAnewAfterItWasDrained();
    void takesNothingWhileItIsDrained();
    void saysSoWithoutAThread();
};

void TestWorkerPool::runsEveryJob()
{
    std::atomic_int count{0};
    {
        WorkerPool pool;
        for (int i = 0; i < 1000; ++i)
            QVERIFY(pool.start([&] { ++count; }, 4));
    }
    QCOMPARE(count.load(), 1000);
}

void TestWorkerPool::runsNoMoreAtOnceThanAskedFor()
{
    std::atomic_int running{0};
    std::atomic_int most{0};
    {
        WorkerPool pool;
        for (int i = 0; i < 200; ++i) {
            pool.start(
                [&] {
                    const int now = ++running;
                    int before = most;
                    while (before < now && !most.compare_exchange_weak(before, now)) { }
                    std::this_thread::yield();
                    --running;
                },
                3);
        }
    }
    QVERIFY2(most <= 3, qPrintable(QString::number(most)));
}

void TestWorkerPool::runsAsManyAtOnceAsAskedFor()
{
    // Each waits for the other: in one thread neither would ever end.
    std::promise<void> first;
    std::promise<void> second;
    WorkerPool pool;
    pool.start(
        [&] {
            first.set_value();
            second.get_future().wait();
        },
        2);
    pool.start(
        [&] {
            first.get_future().wait();
            second.set_value();
        },
        2);
    pool.drain();
}

void TestWorkerPool::keepsItsThread()
{
    WorkerPool pool;
    std::set<std::thread::id> ids;
    for (int i = 0; i < 20; ++i) {
        std::promise<std::thread::id> id;
        QVERIFY(pool.start([&] { id.set_value(std::this_thread::get_id()); }, 1));
        ids.insert(id.get_future().get());
    }
    QCOMPARE(ids.size(), std::size_t(1));
    QVERIFY(ids.count(std::this_thread::get_id()) == 0);
}

void TestWorkerPool::runsWhatWaitsBeforeItEnds()
{
    std::promise<void> gate;
    std::atomic_int count{0};
    WorkerPool pool;
    pool.start([&] { gate.get_future().wait(); }, 1);
    for (int i = 0; i < 5; ++i)
        pool.start([&] { ++count; }, 1);
    gate.set_value();
    pool.drain();
    QCOMPARE(count.load(), 5);
}

void TestWorkerPool::beginsAnewAfterItWasDrained()
{
    WorkerPool pool;
    for (int i = 0; i < 3; ++i) {
        std::promise<void> done;
        QVERIFY(pool.start([&] { done.set_value(); }, 2));
        done.get_future().wait();
        pool.drain();
    }
}

void TestWorkerPool::takesNothingWhileItIsDrained()
{
    WorkerPool pool;
    std::promise<void> started;
    std::promise<void> refused;
    pool.start(
        [&] {
            started.set_value();
            // Until drain() has begun, further jobs are taken; they end when it does.
            while (pool.start([] {}, 1))
                std::this_thread::yield();
            refused.set_value();
        },
        1);
    started.get_future().wait();
    pool.drain();
    refused.get_future().wait();
}

void TestWorkerPool::saysSoWithoutAThread()
{
#ifdef Q_OS_LINUX
    // A stack that no address space holds: the system refuses the thread.
    pthread_attr_t usual;
    pthread_attr_t huge;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    QCOMPARE(pthread_getattr_default_np(&huge), 0);
    QCOMPARE(pthread_attr_setstacksize(&huge, std::size_t(1) << 46), 0);
    QCOMPARE(pthread_setattr_default_np(&huge), 0);
    WorkerPool pool;
    const bool isTaken = pool.start([] {}, 2);
    QCOMPARE(pthread_setattr_default_np(&usual), 0);
    QVERIFY(!isTaken);
    QVERIFY(pool.start([] {}, 2));
#else
    QSKIP("only here a thread can be refused on purpose");
#endif
}

ZY_TEST(TestWorkerPool)
#include "tst_workerpool.moc"
