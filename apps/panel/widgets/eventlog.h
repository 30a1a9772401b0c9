// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What happened and when, newest last.

#ifndef PANEL_EVENTLOG_H
#define PANEL_EVENTLOG_H

#include "notice.h"

#include <QListWidget>

namespace zypanel
{

class EventLog : public QListWidget
{
    Q_OBJECT

public:
    static constexpr int maximumEvents = 500;

    explicit EventLog(QWidget *parent = nullptr);

    void append(const Notice &notice);
    /// Every line, for the clipboard.
    QString allText() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void showMenu(const QPoint &position);
    void copyAll() const;
};

} // namespace zypanel

#endif // PANEL_EVENTLOG_H
