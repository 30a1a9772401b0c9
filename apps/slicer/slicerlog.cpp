// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The program's logging category and what of the log is shown.

#include "slicerlog.h"

Q_LOGGING_CATEGORY(lcSlicer, "zyslicer", QtDebugMsg)

void installLogFilter(bool isVerbose)
{
    // The library's lines are on by default; next to a progress bar they are noise. So are the
    // warnings of Qt's sockets, whose failures the program tells in words of its own.
    const QString state = isVerbose ? QStringLiteral("true") : QStringLiteral("false");
    QLoggingCategory::setFilterRules(
        QStringLiteral("zywebsocket.*.debug=%1\nzyslicer.debug=%1\ndefault.warning=%1").arg(state));
}
