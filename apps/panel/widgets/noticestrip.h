// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The strip at the top that says what is wrong.

#ifndef PANEL_NOTICESTRIP_H
#define PANEL_NOTICESTRIP_H

#include "notice.h"

#include <QFrame>
#include <QVector>

class QToolButton;

namespace zypanel
{

class ElidedLabel;

/**
 * Keeps the last warning or error of each topic until it is dismissed, or a notice of its topic
 * says that it is over, and shows the newest. Its place is there also while it is empty, so that
 * nothing moves away under the mouse.
 */
class NoticeStrip : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeStrip(QWidget *parent = nullptr);

    void showNotice(const Notice &notice);
    /// What was said about @p topic is over.
    void clear(Topic topic);
    void clearAll();
    /// Empty when nothing is wrong.
    QString text() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void dismiss();
    void showNewest();

    QVector<Notice> m_notices; ///< at most one of each topic, the newest last
    ElidedLabel *m_text;
    QToolButton *m_dismiss;
};

} // namespace zypanel

#endif // PANEL_NOTICESTRIP_H
