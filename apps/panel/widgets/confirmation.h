// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks before something is done that destroys work.

#ifndef PANEL_CONFIRMATION_H
#define PANEL_CONFIRMATION_H

#include <QString>

#include <functional>

class QMessageBox;
class QWidget;

namespace zypanel
{

struct Question {
    QString title;
    QString text;
    QString consequence;
    QString accept; ///< the button that does it
    QString reject; ///< the button that leaves everything as it is, and the default
};

/// Returns at once and calls @p accepted later. The box deletes itself; its owner closes it when
/// the question no longer arises.
QMessageBox *confirm(QWidget *parent, const Question &question,
                     const std::function<void()> &accepted);

} // namespace zypanel

#endif // PANEL_CONFIRMATION_H
