// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The dashed field that says that a file can be dropped, and then which one was.

#ifndef PANEL_DROPHINT_H
#define PANEL_DROPHINT_H

#include <zysendresult.h>

#include <QWidget>

namespace zypanel
{

/// Shows only; the panel around it takes the drop, wherever in it the file falls.
class DropHint : public QWidget
{
    Q_OBJECT

public:
    explicit DropHint(QWidget *parent = nullptr);

    /// The file that is to be sent, and what is wrong with it; an empty path asks for one.
    void showFile(const QString &path, ZySendResult::FileFault fault);
    /// A file is being dragged over the panel.
    void setActive(bool isActive);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_title;
    QString m_detail;
    bool m_isActive = false;
};

} // namespace zypanel

#endif // PANEL_DROPHINT_H
