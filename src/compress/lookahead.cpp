// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The chunks of a file, read and compressed before their turn.

#include "lookahead.h"

#include "filetransfer.h"
#include "workerpool.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace zyws
{

namespace
{

constexpr int mostThreads = 16;
constexpr int mostThreadsThatPay = 4;

int threadCount(int wanted)
{
    if (wanted >= 0)
        return std::min(wanted, mostThreads);
    const auto cores = static_cast<int>(std::thread::hardware_concurrency());
    return std::clamp(cores, 1, mostThreadsThatPay);
}

} // namespace

/// Rung by the workers while there is a listener, who may go at any time.
struct LookAhead::Bell {
    std::mutex mutex;
    std::function<void()> ring;
};

/// Shared with the thread that compresses it, which may be left alone with it.
struct LookAhead::Job {
    void run();

    QByteArray bytes;
    int size = 0;
    Effort effort{Effort::ZlibLevel, -1};
    std::atomic_bool isAbandoned{false};
    std::atomic_bool isDone{false};
    // Once it is done:
    QByteArray payload;
    std::exception_ptr failure;
    double seconds = 0;
};

void LookAhead::Job::run()
{
    if (isAbandoned)
        return;
    const auto start = std::chrono::steady_clock::now();
    try {
        payload = compressed(bytes, effort);
    } catch (...) {
        failure = std::current_exception();
    }
    bytes.clear();
    seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    isDone = true;
}

QByteArray LookAhead::Chunk::payload() const
{
    if (job->failure)
        std::rethrow_exception(job->failure);
    return job->payload;
}

bool LookAhead::FileState::operator!=(const FileState &other) const
{
    return size != other.size || modified != other.modified;
}

LookAhead::LookAhead(QFile &file, bool compress, std::function<void()> onReady)
    : m_file(file), m_isCompressing(compress), m_bell(std::make_shared<Bell>())
{
    m_bell->ring = std::move(onReady);
    m_clock.start();
}

LookAhead::~LookAhead()
{
    for (const Entry &entry : m_entries)
        entry.chunk.job->isAbandoned = true;
    const std::lock_guard<std::mutex> lock(m_bell->mutex);
    m_bell->ring = nullptr;
}

void LookAhead::prepare(const Compression &wanted)
{
    discardStale();
    measure();
    const int threads = threadCount(wanted.threads);
    m_controller.setWorkers(threads);
    const std::size_t depth = static_cast<std::size_t>(threads) + 1;
    while (m_entries.size() < depth && (m_entries.empty() || m_entries.back().chunk.size > 0))
        read(wanted.level, threads);
}

bool LookAhead::isReady() const
{
    return !m_entries.empty() && m_entries.front().chunk.job->isDone;
}

LookAhead::Chunk LookAhead::take()
{
    measure();
    const Chunk chunk = m_entries.front().chunk;
    m_entries.pop_front();
    m_sent = chunk.job;
    m_waitingSince = now();
    return chunk;
}

void LookAhead::acknowledged()
{
    if (m_sent && m_sent->effort.kind == Effort::Rung && m_sent->isDone && !m_sent->failure) {
        const auto seconds = static_cast<double>(now() - m_waitingSince) / 1e9;
        m_controller.acknowledged(m_sent->effort.number, m_sent->size, m_sent->payload.size(),
                                  seconds);
    }
    m_sent.reset();
}

/// In this order: the size asks the system, and the time is then known as well.
LookAhead::FileState LookAhead::fileState() const
{
    const qint64 size = m_file.size();
    return {size, m_file.fileTime(QFileDevice::FileModificationTime)};
}

void LookAhead::discardStale()
{
    if (m_entries.empty() || !(fileState() != m_entries.front().fileState))
        return;
    m_file.seek(m_entries.front().position);
    for (const Entry &entry : m_entries)
        entry.chunk.job->isAbandoned = true;
    m_entries.clear();
}

void LookAhead::read(int level, int threads)
{
    const auto job = std::make_shared<Job>();
    const FileState state = fileState();
    const qint64 position = m_file.pos();
    job->bytes = QByteArray(chunkSize, Qt::Uninitialized);
    const auto count = static_cast<int>(m_file.read(job->bytes.data(), chunkSize));
    job->bytes.truncate(std::max(count, 0));
    job->size = count;
    m_entries.push_back({{count, job}, position, state});
    if (count < 1 || !m_isCompressing) {
        job->payload = std::exchange(job->bytes, {});
        job->isDone = true;
        return;
    }
    if (level == adaptiveLevel)
        job->effort = {Effort::Rung, m_controller.choose()};
    else
        job->effort.number = level;
    compress(job, threads);
}

void LookAhead::compress(const std::shared_ptr<Job> &job, int threads)
{
    const auto work = [job, bell = m_bell] {
        job->run();
        const std::lock_guard<std::mutex> lock(bell->mutex);
        if (bell->ring)
            bell->ring();
    };
    if (threads > 0 && startInPool(work, threads))
        return;
    job->run();
    m_waitingSince = now();
}

/// Tells the controller what has been compressed since.
void LookAhead::measure()
{
    for (Entry &entry : m_entries) {
        const Job &job = *entry.chunk.job;
        if (entry.isMeasured || !job.isDone)
            continue;
        entry.isMeasured = true;
        if (job.effort.kind == Effort::Rung && !job.failure)
            m_controller.compressed(job.effort.number, job.size, job.payload.size(), job.seconds);
    }
}

} // namespace zyws
