// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The layers of the job over its whole time, as a small plot.

#include "layerplot.h"

#include "theme.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace zypanel
{

namespace
{

constexpr double minute = 60.0; // s
constexpr double hour = 60 * minute;
constexpr double shortestSpan = 2.0; // s
constexpr int wantedTicks = 5;

struct Unit {
    double seconds;
    QString label; ///< with %1 for the number
};

Unit unitFor(double span)
{
    if (span > 3 * hour)
        return {hour, LayerPlot::tr("%1 h")};
    if (span > 3 * minute)
        return {minute, LayerPlot::tr("%1 min")};
    return {1, LayerPlot::tr("%1 s")};
}

/// A distance of ticks that people like.
double roundInterval(double range)
{
    const double wanted = range / wantedTicks;
    const double decade = std::pow(10.0, std::floor(std::log10(wanted)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (wanted <= factor * decade)
            return factor * decade;
    }
    return 10 * decade;
}

} // namespace

LayerPlot::LayerPlot(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("layerPlot"));
    setAccessibleName(tr("Layers over time"));
    setFont(scaledFont(font(), 0.85));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize LayerPlot::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 9};
}

QSize LayerPlot::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() * 5};
}

void LayerPlot::showHistory(const LayerHistory &history, qint64 now)
{
    m_history = history;
    m_elapsed = history.elapsed(now);
    m_remaining = history.remaining();
    update();
}

double LayerPlot::span() const
{
    return qMax(m_elapsed + m_remaining, shortestSpan);
}

QRectF LayerPlot::plotArea() const
{
    const int line = fontMetrics().height();
    const int label = fontMetrics().horizontalAdvance(QLocale().toString(m_history.layerCount()));
    return QRectF(rect()).adjusted(label + line / 2.0, line / 2.0, -2.0 * line, -1.5 * line);
}

QPointF LayerPlot::position(double seconds, double layer) const
{
    const QRectF area = plotArea();
    return {area.left() + area.width() * seconds / span(),
            area.bottom() - area.height() * layer / qMax(1, m_history.layerCount())};
}

void LayerPlot::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    if (m_history.points().isEmpty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintTicks(painter);
    paintProjection(painter);
    paintSteps(painter);
}

void LayerPlot::paintTicks(QPainter &painter) const
{
    const QRectF area = plotArea();
    const QColor quiet = quietTextColor(palette());
    const QColor grid = blended(palette().color(QPalette::Window), quiet, 0.35);
    const double line = fontMetrics().height();
    const auto tick = [&](const QPointF &from, const QPointF &to, const QRectF &place, int flags,
                          const QString &text) {
        painter.setPen(grid);
        painter.drawLine(from, to);
        painter.setPen(quiet);
        painter.drawText(place, flags, text);
    };
    const int count = m_history.layerCount();
    for (const int layer : {0, count / 2, count}) {
        const double y = position(0, layer).y();
        tick({area.left(), y}, {area.right(), y}, {0, y - line, area.left() - line / 4, 2 * line},
             Qt::AlignRight | Qt::AlignVCenter, QLocale().toString(layer));
    }
    const Unit unit = unitFor(span());
    const double interval = roundInterval(span() / unit.seconds) * unit.seconds;
    const auto marks = static_cast<int>(span() / interval);
    for (int mark = 0; mark <= marks; ++mark) {
        const double seconds = mark * interval;
        const double x = position(seconds, 0).x();
        tick({x, area.top()}, {x, area.bottom()},
             {x - 4 * line, area.bottom() + line / 4, 8 * line, line}, Qt::AlignCenter,
             unit.label.arg(QLocale().toString(seconds / unit.seconds, 'g', 6)));
    }
}

/// A layer is held until the next one begins, however long a pause takes.
void LayerPlot::paintSteps(QPainter &painter) const
{
    const QColor accent = severityColor(Severity::Info, palette());
    QPainterPath steps(position(0, m_history.points().first().layer));
    for (const LayerHistory::Point &point : m_history.points()) {
        steps.lineTo(position(point.seconds, 0).x(), steps.currentPosition().y());
        steps.lineTo(position(point.seconds, point.layer));
    }
    steps.lineTo(position(m_elapsed, m_history.points().last().layer));
    QPainterPath area = steps;
    area.lineTo(position(m_elapsed, 0));
    area.lineTo(position(0, 0));
    painter.fillPath(area, blended(palette().color(QPalette::Window), accent, 0.25));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accent, 2));
    painter.drawPath(steps);
}

void LayerPlot::paintProjection(QPainter &painter) const
{
    if (m_remaining <= 0)
        return;
    painter.setPen(QPen(severityColor(Severity::Info, palette()), 1.5, Qt::DashLine));
    painter.drawLine(position(m_elapsed, m_history.points().last().layer),
                     position(m_elapsed + m_remaining, m_history.layerCount()));
}

} // namespace zypanel
