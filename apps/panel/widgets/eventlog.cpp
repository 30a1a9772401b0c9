// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What happened and when, newest last.

#include "eventlog.h"

#include "theme.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QEvent>
#include <QLocale>
#include <QMenu>
#include <QScrollBar>
#include <QTextBlock>
#include <QTime>

namespace zypanel
{

EventLog::EventLog(QWidget *parent) : QPlainTextEdit(parent)
{
    setObjectName(QStringLiteral("eventLog"));
    setAccessibleName(tr("Events"));
    setReadOnly(true);
    setTabChangesFocus(true);
    setMaximumBlockCount(maximumEvents);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // New lines and a new size change the range.
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this](int, int maximum) {
        if (m_followsEnd)
            verticalScrollBar()->setValue(maximum);
    });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
            [this](int value) { m_followsEnd = value == verticalScrollBar()->maximum(); });
}

QSize EventLog::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 36, fontMetrics().lineSpacing() * 8};
}

QSize EventLog::minimumSizeHint() const
{
    return {fontMetrics().averageCharWidth() * 24, fontMetrics().lineSpacing() * 4};
}

void EventLog::append(const Notice &notice)
{
    appendPlainText(QLocale().toString(QTime::currentTime(), QStringLiteral("HH:mm:ss"))
                    + QStringLiteral("   ") + notice.text);
    const QTextBlock last = document()->lastBlock();
    QTextCursor cursor(last);
    cursor.select(QTextCursor::BlockUnderCursor);
    cursor.setCharFormat(formatOf(notice.severity));
    QTextBlock(last).setUserState(static_cast<int>(notice.severity));
}

QTextCharFormat EventLog::formatOf(Severity severity) const
{
    QTextCharFormat format;
    format.setForeground(severity == Severity::Info ? palette().color(QPalette::Text)
                                                    : severityColor(severity, palette()));
    return format;
}

void EventLog::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        cursor.select(QTextCursor::BlockUnderCursor);
        cursor.setCharFormat(formatOf(static_cast<Severity>(qMax(0, block.userState()))));
    }
}

void EventLog::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Copy all"), this,
                    [this] { QApplication::clipboard()->setText(toPlainText()); });
    menu->addAction(tr("C&lear"), this, &QPlainTextEdit::clear);
    menu->popup(event->globalPos());
}

} // namespace zypanel
