// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The library's own threads for work that takes long.

#include "workerpool.h"

#include <QCoreApplication>

#include <atomic>
#include <exception>
#include <utility>

namespace zyws
{

bool WorkerPool::start(Job job, int threads)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_isDraining)
            return false;
        if (m_idle <= m_jobs.size() && m_threads.size() < static_cast<std::size_t>(threads))
            addThread();
        if (m_threads.empty())
            return false;
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
    return true;
}

void WorkerPool::addThread()
{
    try {
        m_threads.emplace_back([this] { work(); });
    } catch (const std::exception &) {
        // Those that there are go on.
    }
}

void WorkerPool::drain()
{
    std::vector<std::thread> threads;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isDraining = true;
        threads.swap(m_threads);
    }
    m_changed.notify_all();
    for (std::thread &thread : threads)
        thread.join();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isDraining = false;
}

void WorkerPool::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        ++m_idle;
        m_changed.wait(lock, [this] { return !m_jobs.empty() || m_isDraining; });
        --m_idle;
        if (m_jobs.empty())
            return;
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        job = nullptr; // what it holds goes here, not under the lock
        lock.lock();
    }
}

namespace
{

WorkerPool &pool()
{
    static WorkerPool instance;
    return instance;
}

std::atomic_bool isDrainedWithApplication{false};

void drainPool()
{
    isDrainedWithApplication = false; // Qt forgets a routine that it has run
    pool().drain();
}

} // namespace

bool startInPool(WorkerPool::Job job, int threads)
{
    if (QCoreApplication::instance() && !isDrainedWithApplication.exchange(true))
        qAddPostRoutine(drainPool);
    return pool().start(std::move(job), threads);
}

} // namespace zyws
