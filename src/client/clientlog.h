// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The logging category of the slicer's half.

#ifndef CLIENTLOG_H
#define CLIENTLOG_H

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcZyClient)

#endif // CLIENTLOG_H
