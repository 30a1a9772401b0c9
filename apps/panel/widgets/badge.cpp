// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A short word in a tinted pill: the connection's state, the printer's state.

#include "badge.h"

#include "theme.h"

#include <QPainter>

namespace zypanel
{

Badge::Badge(QWidget *parent) : QLabel(parent)
{
    QFont bold = font();
    bold.setBold(true);
    setFont(bold);
    setAlignment(Qt::AlignCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Badge::show(Severity severity, const QString &text)
{
    m_severity = severity;
    m_isQuiet = false;
    setText(text);
    update();
}

void Badge::showQuiet(const QString &text)
{
    m_isQuiet = true;
    setText(text);
    update();
}

QSize Badge::sizeHint() const
{
    const int height = fontMetrics().height();
    return {fontMetrics().horizontalAdvance(text()) + 2 * height, height + height / 2};
}

QSize Badge::minimumSizeHint() const
{
    return sizeHint();
}

void Badge::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    const QColor color
        = m_isQuiet ? quietTextColor(palette()) : severityColor(m_severity, palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(blended(palette().color(QPalette::Window), color, 0.16));
    const qreal radius = height() / 2.0;
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setPen(color);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace zypanel
