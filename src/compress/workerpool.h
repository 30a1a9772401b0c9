// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The library's own threads for work that takes long.

#ifndef WORKERPOOL_H
#define WORKERPOOL_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace zyws
{

/// Runs jobs in threads that it starts as they are needed and keeps until drain().
class WorkerPool
{
public:
    /// Must not throw.
    using Job = std::function<void()>;

    WorkerPool() = default;
    ~WorkerPool() { drain(); }

    /**
     * Has a thread run @p job, after those that wait already. A further thread is started when none
     * is idle and there are fewer than @p threads.
     *
     * False when the system gives no thread at all, or while the pool is drained: the job was not
     * taken, and the caller does it itself. From any thread.
     */
    bool start(Job job, int threads);

    /// Runs what still waits and ends all threads; from one thread at a time. The next start()
    /// begins anew.
    void drain();

private:
    WorkerPool(const WorkerPool &) = delete;
    WorkerPool &operator=(const WorkerPool &) = delete;

    void addThread();
    void work();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    std::vector<std::thread> m_threads;
    std::size_t m_idle = 0;
    bool m_isDraining = false;
};

/**
 * start() of the process's only pool. That is drained in the destructor of the application object,
 * or, without one, at the process's end.
 *
 * Not QThreadPool::globalInstance(), which belongs to the application: our jobs would starve its
 * own.
 */
bool startInPool(WorkerPool::Job job, int threads);

} // namespace zyws

#endif // WORKERPOOL_H
