// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which layer was exposed when, for the plot of a job.

#include "layerhistory.h"

namespace zypanel
{

bool LayerHistory::add(const zysession::PrinterStatus &status, qint64 now)
{
    if (!status.hasJob() || status.layerCount == 0)
        return false;
    const bool isNewJob = m_points.isEmpty() || status.filename != m_filename
        || status.layerCount != m_layerCount || status.layer < m_points.last().layer;
    if (isNewJob) {
        clear();
        m_start = now;
        m_filename = status.filename;
        m_layerCount = status.layerCount;
    }
    m_points.append({static_cast<double>(now - m_start) / 1000.0, status.layer});
    if (m_points.size() > maximumPoints)
        thinOut();
    return true;
}

void LayerHistory::clear()
{
    m_points.clear();
    m_filename.clear();
    m_layerCount = 0;
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
