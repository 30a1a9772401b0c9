// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the session tells the user: one sentence and how bad it is.

#ifndef PANEL_NOTICE_H
#define PANEL_NOTICE_H

#include <QMetaType>
#include <QString>

namespace zypanel
{

enum class Severity { Info, Good, Warning, Error };

struct Notice {
    Severity severity = Severity::Info;
    QString text;
};

} // namespace zypanel

Q_DECLARE_METATYPE(zypanel::Notice)

#endif // PANEL_NOTICE_H
