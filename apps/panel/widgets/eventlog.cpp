// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What happened and when, newest last.

#include "eventlog.h"

#include "theme.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStringList>
#include <QTime>

namespace zypanel
{

namespace
{

constexpr int severityRole = Qt::UserRole;

void paintItem(QListWidgetItem *item, const QPalette &palette)
{
    const auto severity = static_cast<Severity>(item->data(severityRole).toInt());
    item->setForeground(severity == Severity::Info ? palette.color(QPalette::Text)
                                                   : severityColor(severity, palette));
}

} // namespace

EventLog::EventLog(QWidget *parent) : QListWidget(parent)
{
    setObjectName(QStringLiteral("eventLog"));
    setAccessibleName(tr("Events"));
    setWordWrap(true);
    setResizeMode(QListView::Adjust);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this, &EventLog::showMenu);
}

void EventLog::append(const Notice &notice)
{
    const bool followsEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
    auto *item = new QListWidgetItem(time + QStringLiteral("   ") + notice.text, this);
    item->setData(severityRole, static_cast<int>(notice.severity));
    paintItem(item, palette());
    while (count() > maximumEvents)
        delete takeItem(0);
    if (followsEnd)
        scrollToBottom();
}

QString EventLog::allText() const
{
    QStringList lines;
    for (int i = 0; i < count(); ++i)
        lines.append(item(i)->text());
    return lines.join(QLatin1Char('\n'));
}

void EventLog::changeEvent(QEvent *event)
{
    QListWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    for (int i = 0; i < count(); ++i)
        paintItem(item(i), palette());
}

/// popup(), since exec() would hold up a transfer under way.
void EventLog::showMenu(const QPoint &position)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Copy all"), this, &EventLog::copyAll);
    menu->addAction(tr("C&lear"), this, &QListWidget::clear);
    menu->popup(viewport()->mapToGlobal(position));
}

void EventLog::copyAll() const
{
    QApplication::clipboard()->setText(allText());
}

} // namespace zypanel
