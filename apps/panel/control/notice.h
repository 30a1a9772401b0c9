// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the panel says to its user: one sentence, how bad it is, and what it is about.

#ifndef PANEL_NOTICE_H
#define PANEL_NOTICE_H

#include <QMetaType>
#include <QString>

namespace zypanel
{

enum class Severity { Info, Good, Warning, Error };

/// A later notice of the same topic makes an earlier one obsolete.
enum class Topic { Connection, Upload, Print, Parameters, SavedPrinters };

struct Notice {
    Severity severity = Severity::Info;
    Topic topic = Topic::Connection;
    QString text;
};

} // namespace zypanel

Q_DECLARE_METATYPE(zypanel::Notice)

#endif // PANEL_NOTICE_H
