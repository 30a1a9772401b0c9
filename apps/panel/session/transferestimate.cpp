// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How fast a transfer goes and how long it will take.

#include "transferestimate.h"

#include <cmath>

namespace zypanel
{

namespace
{

constexpr qint64 window = 5000; // ms

} // namespace

void TransferEstimate::start(qint64 bytes, qint64 total, qint64 now)
{
    m_samples.clear();
    m_samples.enqueue({bytes, now});
    m_total = total;
}

void TransferEstimate::add(qint64 bytes, qint64 now)
{
    m_samples.enqueue({bytes, now});
    // One sample older than the window stays as its edge, so that a slow link keeps a rate.
    while (m_samples.size() > 2 && now - m_samples.at(1).time >= window)
        m_samples.dequeue();
}

double TransferEstimate::rate() const
{
    if (m_samples.size() < 2)
        return 0;
    const qint64 elapsed = m_samples.last().time - m_samples.first().time;
    const qint64 bytes = m_samples.last().bytes - m_samples.first().bytes;
    if (elapsed <= 0 || bytes <= 0)
        return 0;
    return 1000.0 * static_cast<double>(bytes) / static_cast<double>(elapsed);
}

qint64 TransferEstimate::secondsLeft() const
{
    const double bytesPerSecond = rate();
    if (bytesPerSecond <= 0)
        return -1;
    const qint64 left = qMax<qint64>(0, m_total - m_samples.last().bytes);
    return static_cast<qint64>(std::ceil(static_cast<double>(left) / bytesPerSecond));
}

} // namespace zypanel
