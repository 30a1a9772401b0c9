// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What happened and when, newest last.

#ifndef PANEL_EVENTLOG_H
#define PANEL_EVENTLOG_H

#include "notice.h"

#include <QPlainTextEdit>

namespace zypanel
{

/// Follows its end unless its user has scrolled away from it.
class EventLog : public QPlainTextEdit
{
    Q_OBJECT

public:
    static constexpr int maximumEvents = 500;

    explicit EventLog(QWidget *parent = nullptr);

    void append(const Notice &notice);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    QTextCharFormat formatOf(Severity severity) const;

    bool m_followsEnd = true;
};

} // namespace zypanel

#endif // PANEL_EVENTLOG_H
