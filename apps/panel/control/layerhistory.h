// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which layer was exposed when, for the plot of a job.

#ifndef PANEL_LAYERHISTORY_H
#define PANEL_LAYERHISTORY_H

#include <printerstatus.h>

#include <QString>
#include <QVector>

namespace zypanel
{

/// The layers of one job; a new job starts it over. Bounded, however long the print.
class LayerHistory
{
public:
    struct Point {
        double seconds; ///< since the job was first seen
        int layer;
    };

    static constexpr int maximumPoints = 600;

    /// Takes a status at @p now (ms); true when the points changed.
    bool add(const zysession::PrinterStatus &status, qint64 now);
    void clear();

    const QVector<Point> &points() const { return m_points; }
    int layerCount() const { return m_layerCount; }

private:
    void thinOut();

    QVector<Point> m_points;
    QString m_filename;
    qint64 m_start = 0;
    int m_layerCount = 0;
};

} // namespace zypanel

#endif // PANEL_LAYERHISTORY_H
