// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A short word in a tinted pill: the connection's state, the printer's state.

#ifndef PANEL_BADGE_H
#define PANEL_BADGE_H

#include "notice.h"

#include <QLabel>

namespace zypanel
{

class Badge : public QLabel
{
    Q_OBJECT

public:
    explicit Badge(QWidget *parent = nullptr);

    void show(Severity severity, const QString &text);
    /// Without a tint: nothing to be said.
    void showQuiet(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Severity m_severity = Severity::Info;
    bool m_isQuiet = true;
};

} // namespace zypanel

#endif // PANEL_BADGE_H
