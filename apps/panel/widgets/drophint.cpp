// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The dashed field that says that a file can be dropped, and then which one was.

#include "drophint.h"

#include "formatting.h"
#include "theme.h"
#include "words.h"

#include <QFileInfo>
#include <QPainter>

namespace zypanel
{

using FileFault = ZySendResult::FileFault;

DropHint::DropHint(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("dropHint"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    showFile({}, FileFault::None);
}

void DropHint::showFile(const QString &path, ZySendResult::FileFault fault)
{
    if (path.isEmpty()) {
        m_title = tr("Drop a sliced model here");
        m_detail = tr("or choose one below");
    } else {
        m_title = QFileInfo(path).fileName();
        m_detail = fault == FileFault::None ? sizeText(QFileInfo(path).size())
                                            : fileFaultNotice(fault, m_title).text;
    }
    setAccessibleName(m_title + QStringLiteral(", ") + m_detail);
    update();
}

void DropHint::setActive(bool isActive)
{
    m_isActive = isActive;
    update();
}

QSize DropHint::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 30, fontMetrics().height() * 3};
}

void DropHint::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    const QColor window = palette().color(QPalette::Window);
    const QColor quiet = quietTextColor(palette());
    const QColor color = m_isActive ? severityColor(Severity::Info, palette()) : quiet;
    const qreal radius = fontMetrics().height() / 2.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(blended(window, color, 0.6), 1.5, Qt::DashLine));
    painter.setBrush(blended(window, color, m_isActive ? 0.18 : 0.04));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);

    const int line = fontMetrics().height();
    const QRect titleRect(0, height() / 2 - line, width(), line);
    const int room = width() - 2 * line;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(titleRect, Qt::AlignCenter,
                     fontMetrics().elidedText(m_title, Qt::ElideMiddle, room));
    painter.setPen(quiet);
    painter.drawText(titleRect.translated(0, line), Qt::AlignCenter,
                     fontMetrics().elidedText(m_detail, Qt::ElideMiddle, room));
}

} // namespace zypanel
