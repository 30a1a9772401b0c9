// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The chunks of a file that goes to several printers at once: each is compressed once.

#include "sharedfile.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zyws
{

namespace
{

constexpr int mostKept = 64; // chunks

} // namespace

std::shared_ptr<SharedFile> SharedFile::of(const QString &path, int level)
{
    static std::mutex mutex;
    static std::map<std::pair<QString, int>, std::weak_ptr<SharedFile>> files;
    const std::lock_guard<std::mutex> lock(mutex);
    for (auto file = files.begin(); file != files.end();)
        file = file->second.expired() ? files.erase(file) : std::next(file);
    std::weak_ptr<SharedFile> &known = files[{path, level}];
    std::shared_ptr<SharedFile> file = known.lock();
    if (!file)
        known = file = std::make_shared<SharedFile>();
    return file;
}

std::shared_ptr<ChunkJob> SharedFile::chunk(const void *reader, qint64 position,
                                            const FileState &state,
                                            const std::shared_ptr<Bell> &bell,
                                            const std::function<std::shared_ptr<ChunkJob>()> &read,
                                            bool &isNew)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_readers.emplace(reader, position);
    Entry &entry = m_chunks[position];
    std::shared_ptr<ChunkJob> job = entry.job.lock();
    // What could not be read or compressed for one of them, another one tries anew.
    const bool isUseless = job && job->isDone() && (job->size() < 1 || job->hasFailed());
    isNew = !job || !(entry.state == state) || isUseless || !job->join(bell);
    if (!isNew)
        return job;
    if (entry.kept)
        --m_keptCount;
    entry = {};
    job = read();
    job->join(bell);
    entry = {state, job, {}};
    if (m_readers.size() > 1 && m_keptCount < mostKept) {
        entry.kept = job;
        ++m_keptCount;
    }
    return job;
}

void SharedFile::advance(const void *reader, qint64 position)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_readers[reader] = position;
    forgetPassed();
}

void SharedFile::leave(const void *reader)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_readers.erase(reader);
    forgetPassed();
}

void SharedFile::forgetPassed()
{
    qint64 slowest = std::numeric_limits<qint64>::max();
    for (const auto &[reader, position] : m_readers)
        slowest = std::min(slowest, position);
    while (!m_chunks.empty() && m_chunks.begin()->first < slowest) {
        if (m_chunks.begin()->second.kept)
            --m_keptCount;
        m_chunks.erase(m_chunks.begin());
    }
}

} // namespace zyws
