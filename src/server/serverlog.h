// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The logging category of the printer's half.

#ifndef SERVERLOG_H
#define SERVERLOG_H

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcZyServer)

#endif // SERVERLOG_H
