// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printer names and addresses as people type them.

#ifndef PRINTERADDRESS_H
#define PRINTERADDRESS_H

#include "outcome.h"

#include <QUrl>

/// Whether @p text may be the name of a saved printer; no URL is one.
bool isPrinterName(const QString &text);
/// Reads "ws://host:port" or "host:port" into @p url.
Outcome parsePrinterAddress(const QString &text, QUrl &url);

#endif // PRINTERADDRESS_H
