// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which layer was begun when, and when the last one will be, for the plot of a job.

#include "layerhistory.h"

namespace zypanel
{

using zysession::PrinterStatus;

namespace
{

constexpr double longEnoughToMeasure = 0.5; // s

double seconds(qint64 milliseconds)
{
    return static_cast<double>(milliseconds) / 1000.0;
}

} // namespace

void LayerHistory::add(const PrinterStatus &status, qint64 now)
{
    const bool isOver = !status.hasJob();
    if (isOver && (m_points.isEmpty() || m_end >= 0))
        return;
    if (!isOver && status.layerCount > 0 && isNewJob(status))
        begin(status, now);
    if (m_points.isEmpty())
        return;
    // The last layers may have been done since the last status.
    const bool isSameJob = status.filename == m_filename && status.layerCount == m_layerCount;
    if (isSameJob && status.layer > m_points.last().layer)
        m_points.append({seconds(now - m_start), status.layer});
    if (m_points.size() > maximumPoints)
        thinOut();
    measure(status, now);
    if (isOver)
        m_end = now;
}

bool LayerHistory::isNewJob(const PrinterStatus &status) const
{
    return m_points.isEmpty() || m_end >= 0 || status.filename != m_filename
        || status.layerCount != m_layerCount || status.layer < m_points.last().layer;
}

void LayerHistory::begin(const PrinterStatus &status, qint64 now)
{
    *this = {};
    m_start = now;
    m_filename = status.filename;
    m_layerCount = status.layerCount;
    m_points.append({0, status.layer});
}

void LayerHistory::measure(const PrinterStatus &status, qint64 now)
{
    const qint64 remaining = status.remainingSeconds();
    const bool isPrinting = status.state == PrinterStatus::State::Printing;
    if (isPrinting && m_state == status.state && remaining >= 0 && remaining <= m_remaining) {
        m_passed += seconds(now - m_measuredAt);
        m_counted += static_cast<double>(m_remaining - remaining);
    }
    m_state = status.state;
    m_remaining = remaining;
    m_measuredAt = now;
}

double LayerHistory::elapsed(qint64 now) const
{
    return m_points.isEmpty() ? 0 : seconds((m_end < 0 ? now : m_end) - m_start);
}

double LayerHistory::remaining() const
{
    if (m_end >= 0 || m_remaining <= 0)
        return 0;
    const double speed = m_passed > longEnoughToMeasure && m_counted > 0 ? m_counted / m_passed : 1;
    // Of a real printer the rounding to seconds alone makes a difference.
    const bool isRealTime = speed > 0.5 && speed < 2;
    return static_cast<double>(m_remaining) / (isRealTime ? 1 : speed);
}

/// Drops every other point, but neither the first nor the last.
void LayerHistory::thinOut()
{
    QVector<Point> kept;
    kept.reserve(maximumPoints);
    for (int i = 0; i < m_points.size() - 1; i += 2)
        kept.append(m_points.at(i));
    kept.append(m_points.last());
    m_points = kept;
}

} // namespace zypanel
