// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The strip at the top that says what is wrong.

#include "noticestrip.h"

#include "elidedlabel.h"
#include "theme.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace zypanel
{

NoticeStrip::NoticeStrip(QWidget *parent)
    : QFrame(parent), m_text(new ElidedLabel(2)), m_dismiss(new QToolButton)
{
    setObjectName(QStringLiteral("noticeStrip"));
    m_text->setObjectName(QStringLiteral("noticeText"));
    m_dismiss->setObjectName(QStringLiteral("noticeDismiss"));
    m_dismiss->setAutoRaise(true);
    m_dismiss->setText(QStringLiteral("✕"));
    m_dismiss->setToolTip(tr("Dismiss this message"));
    m_dismiss->setAccessibleName(m_dismiss->toolTip());
    m_dismiss->setFocusPolicy(Qt::TabFocus);
    QSizePolicy keepsItsPlace = m_dismiss->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_dismiss->setSizePolicy(keepsItsPlace);

    auto *layout = new QHBoxLayout(this);
    const int gap = style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing);
    layout->setContentsMargins(2 * gap + 2, gap / 2, gap, gap / 2);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_dismiss);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(m_dismiss, &QToolButton::clicked, this, &NoticeStrip::dismiss);
    showNewest();
}

void NoticeStrip::showNotice(const Notice &notice)
{
    clear(notice.topic);
    if (notice.severity != Severity::Warning && notice.severity != Severity::Error)
        return;
    m_notices.append(notice);
    showNewest();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NoticeStrip::clear(Topic topic)
{
    m_notices.erase(std::remove_if(m_notices.begin(), m_notices.end(),
                                   [=](const Notice &each) { return each.topic == topic; }),
                    m_notices.end());
    showNewest();
}

void NoticeStrip::clearAll()
{
    m_notices.clear();
    showNewest();
}

QString NoticeStrip::text() const
{
    return m_text->text();
}

void NoticeStrip::dismiss()
{
    if (!m_notices.isEmpty())
        m_notices.removeLast();
    showNewest();
}

void NoticeStrip::showNewest()
{
    const QString text = m_notices.isEmpty() ? QString() : m_notices.last().text;
    m_text->setText(text);
    setAccessibleName(text);
    m_dismiss->setVisible(!text.isEmpty());
    update();
}

void NoticeStrip::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    if (m_notices.isEmpty())
        return;
    const QColor color = severityColor(m_notices.last().severity, palette());
    const int edge = qMax(3, fontMetrics().height() / 4);
    QPainter painter(this);
    painter.fillRect(rect(), blended(palette().color(QPalette::Window), color, 0.14));
    painter.fillRect(QRect(0, 0, edge, height()), color);
}

} // namespace zypanel
