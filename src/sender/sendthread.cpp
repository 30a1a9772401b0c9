// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The thread of one file sender, which may outlive its sender but not the application.

#include "sendthread.h"

#include "sha256.h"

#include <QCoreApplication>
#include <QMutex>
#include <QSet>

#include <utility>

namespace zyws
{

namespace
{

/// The threads that were abandoned and are not deleted yet.
struct AbandonedThreads {
    QMutex mutex;
    QSet<SendThread *> threads;
    bool isWaitedFor = false; ///< when the application object goes
};

AbandonedThreads &abandonedThreads()
{
    static AbandonedThreads instance;
    return instance;
}

/// Runs in the destructor of the application object, without which no thread of Qt's may run.
void waitForAbandonedThreads()
{
    const QMutexLocker locker(&abandonedThreads().mutex);
    abandonedThreads().isWaitedFor = false; // Qt forgets a routine that it has run
    for (SendThread *thread : qAsConst(abandonedThreads().threads))
        thread->wait();
}

} // namespace

SendThread::SendThread(const SendJob &job) : m_worker(job)
{
    m_worker.moveToThread(this);
    connect(this, &QThread::started, &m_worker, &SendWorker::start);
    connect(
        &m_worker, &SendWorker::finished, &m_worker, [this] { quit(); }, Qt::QueuedConnection);
}

SendThread::~SendThread()
{
    wait();
    const QMutexLocker locker(&abandonedThreads().mutex);
    abandonedThreads().threads.remove(this);
}

/// Waiting for a thread of Qt's ends a little before the thread does, and OpenSSL frees what it
/// keeps for each thread twice when the process exits just then: here it is freed before.
void SendThread::run()
{
    exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // TLS sockets
    Sha256::leaveThread();
}

void SendThread::abandon()
{
    QMetaObject::invokeMethod(
        &m_worker,
        [this] {
            m_worker.leave();
            quit();
        },
        Qt::QueuedConnection);
    const bool hasStarted = isRunning() || isFinished();
    if (!QCoreApplication::instance() || !hasStarted) {
        delete this;
        return;
    }
    {
        const QMutexLocker locker(&abandonedThreads().mutex);
        if (!std::exchange(abandonedThreads().isWaitedFor, true))
            qAddPostRoutine(waitForAbandonedThreads);
        abandonedThreads().threads.insert(this);
    }
    connect(this, &QThread::finished, this, &QObject::deleteLater);
    if (isFinished()) // before it was connected
        deleteLater();
}

} // namespace zyws
