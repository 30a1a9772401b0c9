// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which layer was begun when, and when the last one will be, for the plot of a job.

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
        int layer; ///< that began then
    };

    static constexpr int maximumPoints = 600;

    /// Takes a status at @p now (ms, of any clock).
    void add(const zysession::PrinterStatus &status, qint64 now);

    const QVector<Point> &points() const { return m_points; }
    int layerCount() const { return m_layerCount; }
    /// Seconds from the job's start to @p now, or to its end.
    double elapsed(qint64 now) const;
    /// Seconds from the last status to the end; 0 after it and while unknown. A printer's count
    /// that falls faster or slower than the time passes is corrected by that.
    double remaining() const;

private:
    bool isNewJob(const zysession::PrinterStatus &status) const;
    void begin(const zysession::PrinterStatus &status, qint64 now);
    void measure(const zysession::PrinterStatus &status, qint64 now);
    void thinOut();

    QVector<Point> m_points;
    QString m_filename;
    int m_layerCount = 0;
    qint64 m_start = 0;
    qint64 m_end = -1; ///< of a job that is over

    // How fast the printer's count falls, over the times of printing.
    zysession::PrinterStatus::State m_state = zysession::PrinterStatus::State::Unknown;
    qint64 m_remaining = -1; ///< as the printer says, in seconds
    qint64 m_measuredAt = 0;
    double m_passed = 0; ///< seconds
    double m_counted = 0; ///< of the printer's seconds
};

} // namespace zypanel

#endif // PANEL_LAYERHISTORY_H
