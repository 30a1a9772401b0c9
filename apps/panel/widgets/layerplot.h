// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layers of the job over time, as a small plot.

#ifndef PANEL_LAYERPLOT_H
#define PANEL_LAYERPLOT_H

#include "layerhistory.h"

#include <QChartView>

QT_CHARTS_BEGIN_NAMESPACE
class QAreaSeries;
class QLineSeries;
class QValueAxis;
QT_CHARTS_END_NAMESPACE

namespace zypanel
{

class LayerPlot : public QtCharts::QChartView
{
    Q_OBJECT

public:
    explicit LayerPlot(QWidget *parent = nullptr);

    void showHistory(const LayerHistory &history);
    int pointCount() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void buildAxes();
    void applyPalette();

    QtCharts::QLineSeries *m_line;
    QtCharts::QLineSeries *m_edge; ///< of the area, whose own outline would close it on the right
    QtCharts::QAreaSeries *m_area;
    QtCharts::QValueAxis *m_time;
    QtCharts::QValueAxis *m_layer;
};

} // namespace zypanel

#endif // PANEL_LAYERPLOT_H
