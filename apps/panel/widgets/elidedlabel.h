// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A label that never widens its window: what does not fit is left out, and in the tooltip.

#ifndef PANEL_ELIDEDLABEL_H
#define PANEL_ELIDEDLABEL_H

#include <QLabel>

namespace zypanel
{

/// Plain text only: printers' texts are not ours and never read as markup.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    /// One line leaves out its middle, several are wrapped and leave out their end.
    explicit ElidedLabel(int lines = 1, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QStringList shownLines() const;

    int m_lines;
};

} // namespace zypanel

#endif // PANEL_ELIDEDLABEL_H
