// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One chunk on its way through a thread of the pool, and those who wait for it.

#ifndef CHUNKJOB_H
#define CHUNKJOB_H

#include "compressor.h"

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace zyws
{

/// Rung in any thread while there is a listener, who may go at any time.
class Bell
{
public:
    explicit Bell(std::function<void()> ring) : m_ring(std::move(ring)) { }

    void ring();
    /// The listener is gone when this returns.
    void silence();

private:
    std::mutex m_mutex;
    std::function<void()> m_ring;
};

/**
 * A chunk that is compressed once, whoever wants it.
 *
 * The thread that runs it shares it with those who wait, and is left alone with it when they all
 * have gone.
 */
class ChunkJob
{
public:
    /// @p size is what reading gave, below 1 at the file's end.
    ChunkJob(QByteArray bytes, int size, Effort effort);

    int size() const { return m_size; }
    Effort effort() const { return m_effort; }

    /// The chunk is wanted, and @p bell rung once it is done. False when nobody wanted it any more,
    /// and it was given up.
    bool join(const std::shared_ptr<Bell> &bell);
    void leave(const std::shared_ptr<Bell> &bell);

    void run();
    /// Instead of run(), for what is sent as it is.
    void passThrough();
    bool isDone() const { return m_isDone; }

    // Once it is done:
    bool hasFailed() const { return m_failure != nullptr; }
    /// What is to be sent. Throws what compressing has thrown.
    QByteArray payload() const;
    int payloadSize() const { return static_cast<int>(m_payload.size()); }
    double seconds() const { return m_seconds; }

private:
    QByteArray m_bytes;
    const int m_size;
    const Effort m_effort;

    std::mutex m_mutex;
    std::vector<std::shared_ptr<Bell>> m_bells;
    bool m_isGivenUp = false;
    std::atomic_bool m_isDone{false};

    QByteArray m_payload;
    std::exception_ptr m_failure;
    double m_seconds = 0;
};

} // namespace zyws

#endif // CHUNKJOB_H
