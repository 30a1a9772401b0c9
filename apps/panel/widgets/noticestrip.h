// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The strip at the top that says what went wrong and what can be done about it.

#ifndef PANEL_NOTICESTRIP_H
#define PANEL_NOTICESTRIP_H

#include "notice.h"

#include <QFrame>

class QLabel;
class QPushButton;
class QToolButton;

namespace zypanel
{

/// Shows the last notice until it is dismissed or the next replaces it.
class NoticeStrip : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeStrip(QWidget *parent = nullptr);

    void showNotice(const Notice &notice);
    /// A button for what can be done about the notice; none with an empty text.
    void offerAction(const QString &text);
    QString text() const;
    Severity severity() const { return m_severity; }

Q_SIGNALS:
    void actionTriggered();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Severity m_severity = Severity::Info;
    QLabel *m_text;
    QPushButton *m_action;
    QToolButton *m_dismiss;
};

} // namespace zypanel

#endif // PANEL_NOTICESTRIP_H
