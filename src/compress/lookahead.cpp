// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The chunks of a file, read and compressed before their turn.

#include "lookahead.h"

#include "filetransfer.h"
#include "workerpool.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
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

LookAhead::LookAhead(QFile &file, bool compress, std::function<void()> onReady)
    : m_file(file), m_isCompressing(compress), m_path(QFileInfo(file).canonicalFilePath()),
      m_bell(std::make_shared<Bell>(std::move(onReady)))
{
    m_clock.start();
}

LookAhead::~LookAhead()
{
    if (m_shared)
        m_shared->leave(this);
    for (const Entry &entry : m_entries)
        entry.chunk->leave(m_bell);
    m_bell->silence();
}

void LookAhead::prepare(const Compression &wanted)
{
    discardStale();
    measure();
    const int threads = threadCount(wanted.threads);
    m_controller.setWorkers(threads);
    const std::size_t depth = static_cast<std::size_t>(threads) + 1;
    while (m_entries.size() < depth && (m_entries.empty() || m_entries.back().chunk->size() > 0))
        read(wanted.level, threads);
}

bool LookAhead::isReady() const
{
    return !m_entries.empty() && m_entries.front().chunk->isDone();
}

bool LookAhead::isAtEnd() const
{
    return !m_entries.empty() && m_entries.front().chunk->size() < 1;
}

std::shared_ptr<ChunkJob> LookAhead::take()
{
    measure();
    const Entry entry = m_entries.front();
    m_entries.pop_front();
    const ChunkJob &chunk = *entry.chunk;
    if (m_isStarving && chunk.effort().kind == Effort::Rung)
        m_controller.starved(chunk.effort().number, chunk.size(),
                             static_cast<double>(now() - m_sentAt) / 1e9);
    if (m_shared)
        m_shared->advance(this, entry.position + chunk.size());
    m_sentAt = now();
    m_underWay.push_back({chunk.effort(), chunk.size(), chunk.payloadSize(), m_sentAt});
    return entry.chunk;
}

void LookAhead::acknowledgedUpTo(int underWay)
{
    const auto left = static_cast<std::size_t>(underWay);
    if (m_underWay.size() <= left)
        return;
    // A chunk has the line once the one before it has arrived. Those that were acknowledged at the
    // same time have shared it.
    const auto since = std::max(m_underWay.front().at, m_waitingSince);
    const double seconds
        = static_cast<double>(now() - since) / 1e9 / static_cast<double>(m_underWay.size() - left);
    for (; m_underWay.size() > left; m_underWay.pop_front()) {
        const Sent &sent = m_underWay.front();
        if (sent.effort.kind == Effort::Rung)
            m_controller.acknowledged(sent.effort.number, sent.size, sent.payloadSize, seconds);
    }
    m_waitingSince = now();
    m_isStarving = m_underWay.empty() && !isReady();
}

/// In this order: the size asks the system, and the time is then known as well.
FileState LookAhead::fileState() const
{
    const qint64 size = m_file.size();
    return {size, m_file.fileTime(QFileDevice::FileModificationTime)};
}

void LookAhead::discardStale()
{
    if (m_entries.empty() || fileState() == m_entries.front().fileState)
        return;
    m_file.seek(m_entries.front().position);
    for (const Entry &entry : m_entries)
        entry.chunk->leave(m_bell);
    m_entries.clear();
}

void LookAhead::read(int level, int threads)
{
    const FileState state = fileState();
    const qint64 position = m_file.pos();
    bool isNew = true;
    std::shared_ptr<ChunkJob> job;
    if (threads > 0 && m_isCompressing) {
        share(level);
        job = m_shared->chunk(
            this, position, state, m_bell, [&] { return readChunk(level); }, isNew);
    } else {
        job = readChunk(level);
        job->join(m_bell);
    }
    m_entries.push_back({job, position, state});
    if (!isNew)
        m_file.seek(position + qMax(0, job->size()));
    else if (!job->isDone())
        compress(job, threads);
}

std::shared_ptr<ChunkJob> LookAhead::readChunk(int level)
{
    // Fresh memory for each chunk costs time in page faults, but a thread has to be its sole owner.
    if (!m_buffer.isDetached())
        m_buffer = QByteArray(chunkSize, Qt::Uninitialized);
    const auto count = static_cast<int>(m_file.read(m_buffer.data(), chunkSize));
    QByteArray bytes = m_shared ? std::exchange(m_buffer, {}) : m_buffer;
    bytes.truncate(std::max(count, 0));
    Effort effort{Effort::ZlibLevel, level};
    if (level == adaptiveLevel && m_isCompressing && count > 0)
        effort = {Effort::Rung, m_controller.choose()};
    auto job = std::make_shared<ChunkJob>(std::move(bytes), count, effort);
    if (count < 1 || !m_isCompressing)
        job->passThrough();
    return job;
}

void LookAhead::compress(const std::shared_ptr<ChunkJob> &job, int threads)
{
    if (threads > 0 && startInPool([job] { job->run(); }, threads))
        return;
    job->run();
    m_waitingSince = now();
}

/// Finds those who send the same file at the same level.
void LookAhead::share(int level)
{
    if (m_shared && m_sharedLevel == level)
        return;
    if (m_shared)
        m_shared->leave(this);
    m_shared = SharedFile::of(m_path, level);
    m_sharedLevel = level;
}

/// Tells the controller what has been compressed since.
void LookAhead::measure()
{
    for (Entry &entry : m_entries) {
        const ChunkJob &job = *entry.chunk;
        if (entry.isMeasured || !job.isDone())
            continue;
        entry.isMeasured = true;
        if (job.effort().kind == Effort::Rung && !job.hasFailed())
            m_controller.compressed(job.effort().number, job.size(), job.payloadSize(),
                                    job.seconds());
    }
}

} // namespace zyws
