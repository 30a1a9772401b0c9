// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The rate of a transfer over its last seconds, and what time that leaves.

#include "ratemeter.h"

#include <algorithm>
#include <cmath>

namespace zysession
{

namespace
{

constexpr qint64 window = 5000; // ms

} // namespace

void RateMeter::start(qint64 now, qint64 bytes)
{
    m_samples = {{now, bytes}};
}

void RateMeter::add(qint64 now, qint64 bytes)
{
    m_samples.append({now, bytes});
    // One sample older than the window stays: it is where the window begins.
    while (m_samples.size() > 2 && m_samples[1].time <= now - window)
        m_samples.removeFirst();
}

double RateMeter::bytesPerSecond() const
{
    if (m_samples.size() < 2)
        return 0;
    const qint64 time = m_samples.last().time - m_samples.first().time;
    const qint64 bytes = m_samples.last().bytes - m_samples.first().bytes;
    if (time <= 0 || bytes <= 0)
        return 0;
    return static_cast<double>(bytes) * 1000.0 / static_cast<double>(time);
}

qint64 RateMeter::secondsLeft(qint64 total) const
{
    const double rate = bytesPerSecond();
    if (rate <= 0)
        return -1;
    const qint64 left = std::max<qint64>(0, total - m_samples.last().bytes);
    return static_cast<qint64>(std::ceil(static_cast<double>(left) / rate));
}

} // namespace zysession
