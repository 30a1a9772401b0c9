// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layers of the job over its whole time, as a small plot.

#ifndef PANEL_LAYERPLOT_H
#define PANEL_LAYERPLOT_H

#include "layerhistory.h"

#include <QWidget>

namespace zypanel
{

/// Steps for the layers that are done, a dashed line for those to come.
class LayerPlot : public QWidget
{
    Q_OBJECT

public:
    explicit LayerPlot(QWidget *parent = nullptr);

    /// @p now as in LayerHistory::add().
    void showHistory(const LayerHistory &history, qint64 now);
    qsizetype pointCount() const { return m_history.points().size(); }
    /// Where the plot ends, in seconds from the job's start: its end, as far as that is known.
    double span() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRectF plotArea() const;
    QPointF position(double seconds, double layer) const;
    void paintTicks(QPainter &painter) const;
    void paintSteps(QPainter &painter) const;
    void paintProjection(QPainter &painter) const;

    LayerHistory m_history;
    double m_elapsed = 0; ///< seconds
    double m_remaining = 0; ///< seconds; 0 at the end and while unknown
};

} // namespace zypanel

#endif // PANEL_LAYERPLOT_H
