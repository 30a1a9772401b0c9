// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The strip at the top that says what went wrong and what can be done about it.

#include "noticestrip.h"

#include "theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace zypanel
{

NoticeStrip::NoticeStrip(QWidget *parent)
    : QFrame(parent), m_text(new QLabel), m_action(new QPushButton), m_dismiss(new QToolButton)
{
    setObjectName(QStringLiteral("noticeStrip"));
    m_text->setObjectName(QStringLiteral("noticeText"));
    m_text->setWordWrap(true);
    // Printers' texts are not ours: never read as markup.
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_action->setObjectName(QStringLiteral("noticeAction"));
    m_action->hide();
    m_dismiss->setObjectName(QStringLiteral("noticeDismiss"));
    m_dismiss->setAutoRaise(true);
    m_dismiss->setText(QStringLiteral("✕"));
    m_dismiss->setToolTip(tr("Dismiss this message"));
    m_dismiss->setAccessibleName(m_dismiss->toolTip());
    m_dismiss->setFocusPolicy(Qt::TabFocus);

    auto *layout = new QHBoxLayout(this);
    const int gap = style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing);
    layout->setContentsMargins(2 * gap + 2, gap, gap, gap);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_action);
    layout->addWidget(m_dismiss);

    connect(m_dismiss, &QToolButton::clicked, this, &QWidget::hide);
    connect(m_action, &QPushButton::clicked, this, &NoticeStrip::actionTriggered);
    hide();
}

void NoticeStrip::showNotice(const Notice &notice)
{
    m_severity = notice.severity;
    m_text->setText(notice.text);
    setAccessibleName(notice.text);
    show();
    update();
}

void NoticeStrip::offerAction(const QString &text)
{
    m_action->setText(text);
    m_action->setVisible(!text.isEmpty());
}

QString NoticeStrip::text() const
{
    return m_text->text();
}

void NoticeStrip::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    const QColor color = severityColor(m_severity, palette());
    const int edge = qMax(3, fontMetrics().height() / 4);
    QPainter painter(this);
    painter.fillRect(rect(), blended(palette().color(QPalette::Window), color, 0.14));
    painter.fillRect(QRect(0, 0, edge, height()), color);
}

} // namespace zypanel
