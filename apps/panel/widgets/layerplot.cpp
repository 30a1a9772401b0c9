// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layers of the job over time, as a small plot.

#include "layerplot.h"

#include "theme.h"

#include <QAreaSeries>
#include <QChart>
#include <QEvent>
#include <QGraphicsLayout>
#include <QLineSeries>
#include <QPen>
#include <QValueAxis>

#include <cmath>
#include <initializer_list>

namespace zypanel
{

namespace
{

constexpr double minute = 60.0; // s
constexpr double shortestSpan = 2.0; // s
constexpr double longestInSeconds = 3 * minute;

/// A distance of ticks that people like, so that about five fit.
double roundInterval(double range)
{
    const double wanted = range / 5;
    const double decade = std::pow(10.0, std::floor(std::log10(wanted)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (wanted <= factor * decade)
            return factor * decade;
    }
    return 10 * decade;
}

} // namespace

LayerPlot::LayerPlot(QWidget *parent)
    : QtCharts::QChartView(parent), m_line(new QtCharts::QLineSeries),
      m_edge(new QtCharts::QLineSeries(this)), m_area(new QtCharts::QAreaSeries(m_edge)),
      m_time(new QtCharts::QValueAxis), m_layer(new QtCharts::QValueAxis)
{
    setObjectName(QStringLiteral("layerPlot"));
    setAccessibleName(tr("Layers over time"));
    setRenderHint(QPainter::Antialiasing);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setMinimumHeight(fontMetrics().height() * 8);
    chart()->addSeries(m_area);
    chart()->addSeries(m_line);
    chart()->legend()->hide();
    chart()->setBackgroundVisible(false);
    chart()->setMargins({});
    chart()->layout()->setContentsMargins(0, 0, 0, 0);
    buildAxes();
    applyPalette();
    showHistory({});
}

void LayerPlot::buildAxes()
{
    m_layer->setTitleText(tr("Layer"));
    m_layer->setLabelFormat(QStringLiteral("%d"));
    m_layer->setTickCount(3);
    m_time->setTickType(QtCharts::QValueAxis::TicksDynamic);
    chart()->addAxis(m_time, Qt::AlignBottom);
    chart()->addAxis(m_layer, Qt::AlignLeft);
    for (QtCharts::QAbstractSeries *series :
         std::initializer_list<QtCharts::QAbstractSeries *>{m_area, m_line}) {
        series->attachAxis(m_time);
        series->attachAxis(m_layer);
    }
}

void LayerPlot::showHistory(const LayerHistory &history)
{
    const QVector<LayerHistory::Point> &points = history.points();
    const double span = points.isEmpty() ? 0 : points.last().seconds;
    const bool inMinutes = span > longestInSeconds;
    const double unit = inMinutes ? minute : 1;
    QVector<QPointF> line;
    line.reserve(points.size());
    for (const LayerHistory::Point &point : points)
        line.append({point.seconds / unit, static_cast<double>(point.layer)});
    m_line->replace(line);
    m_edge->replace(line);
    m_time->setTitleText(inMinutes ? tr("Time (min)") : tr("Time (s)"));
    const double end = qMax(span, shortestSpan) / unit;
    m_time->setRange(0, end);
    m_time->setTickInterval(roundInterval(end));
    m_time->setLabelFormat(QStringLiteral("%g"));
    m_time->setLabelsVisible(!points.isEmpty());
    m_layer->setLabelsVisible(!points.isEmpty());
    m_layer->setRange(0, qMax(1, history.layerCount()));
}

int LayerPlot::pointCount() const
{
    return m_line->count();
}

void LayerPlot::changeEvent(QEvent *event)
{
    QtCharts::QChartView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

void LayerPlot::applyPalette()
{
    const QColor accent = severityColor(Severity::Info, palette());
    const QColor quiet = quietTextColor(palette());
    const QColor window = palette().color(QPalette::Window);
    m_line->setPen(QPen(accent, 2));
    m_area->setPen(Qt::NoPen);
    m_area->setBrush(blended(window, accent, 0.25));
    const QFont small = scaledFont(font(), 0.85);
    for (QtCharts::QValueAxis *axis : {m_time, m_layer}) {
        axis->setLabelsColor(quiet);
        axis->setTitleBrush(quiet);
        axis->setLabelsFont(small);
        axis->setTitleFont(small);
        axis->setLinePenColor(quiet);
        axis->setGridLineColor(blended(window, quiet, 0.35));
    }
    // A graphics view paints the base colour, which is not the colour of the box around it.
    setBackgroundBrush(Qt::NoBrush);
    viewport()->setAutoFillBackground(false);
}

} // namespace zypanel
