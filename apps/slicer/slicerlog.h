// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The program's logging category and what of the log is shown.

#ifndef SLICERLOG_H
#define SLICERLOG_H

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcSlicer)

/// Debug lines, the library's included, and Qt's warnings are shown only when @p isVerbose.
void installLogFilter(bool isVerbose);

#endif // SLICERLOG_H
