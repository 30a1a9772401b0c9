// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A label that never widens its window: what does not fit is left out, and in the tooltip.

#include "elidedlabel.h"

#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

namespace zypanel
{

namespace
{

constexpr int narrowest = 8; // characters

} // namespace

ElidedLabel::ElidedLabel(int lines, QWidget *parent) : QLabel(parent), m_lines(lines)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(text()) + 2, minimumSizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * narrowest, fontMetrics().lineSpacing() * m_lines};
}

QStringList ElidedLabel::shownLines() const
{
    if (m_lines == 1)
        return {fontMetrics().elidedText(text(), Qt::ElideMiddle, width())};
    QStringList lines;
    QTextLayout layout(text(), font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    while (lines.size() < m_lines) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width());
        const bool isLast = lines.size() == m_lines - 1;
        lines.append(
            isLast ? fontMetrics().elidedText(text().mid(line.textStart()), Qt::ElideRight, width())
                   : text().mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    return lines;
}

bool ElidedLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const bool isElided = shownLines().join(QString()).contains(QChar(0x2026))
            && !text().contains(QChar(0x2026));
        // The tag has it read as what it is: escaped.
        const QString whole = QStringLiteral("<p>%1</p>").arg(text().toHtmlEscaped());
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                           isElided ? whole : toolTip(), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    const QStringList lines = shownLines();
    QPainter painter(this);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    const int spacing = fontMetrics().lineSpacing();
    const int height = spacing * static_cast<int>(lines.size());
    QRect line(0, (this->height() - height) / 2, width(), spacing);
    for (const QString &each : lines) {
        painter.drawText(line,
                         static_cast<int>(alignment() & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter
                             | Qt::TextSingleLine,
                         each);
        line.translate(0, spacing);
    }
}

} // namespace zypanel
