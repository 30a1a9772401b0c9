// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One chunk on its way through a thread of the pool, and those who wait for it.

#include "chunkjob.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zyws
{

void Bell::ring()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_ring)
        m_ring();
}

void Bell::silence()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ring = nullptr;
}

ChunkJob::ChunkJob(QByteArray bytes, int size, Effort effort)
    : m_bytes(std::move(bytes)), m_size(size), m_effort(effort)
{
}

bool ChunkJob::join(const std::shared_ptr<Bell> &bell)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_isGivenUp)
        m_bells.push_back(bell);
    return !m_isGivenUp;
}

void ChunkJob::leave(const std::shared_ptr<Bell> &bell)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = std::find(m_bells.begin(), m_bells.end(), bell);
    if (found != m_bells.end())
        m_bells.erase(found);
}

void ChunkJob::run()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isGivenUp = m_bells.empty();
        if (m_isGivenUp)
            return;
    }
    const auto start = std::chrono::steady_clock::now();
    try {
        m_payload = compressed(m_bytes, m_effort);
    } catch (...) {
        m_failure = std::current_exception();
    }
    m_bytes.clear();
    m_seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::vector<std::shared_ptr<Bell>> bells;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isDone = true;
        bells.swap(m_bells);
    }
    for (const std::shared_ptr<Bell> &bell : bells)
        bell->ring();
}

void ChunkJob::passThrough()
{
    m_payload = std::exchange(m_bytes, {});
    m_isDone = true;
}

QByteArray ChunkJob::payload() const
{
    if (m_failure)
        std::rethrow_exception(m_failure);
    return m_payload;
}

} // namespace zyws
