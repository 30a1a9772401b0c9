// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Amounts, rates and times as people read them.

#ifndef UNITS_H
#define UNITS_H

#include <QString>

/// "512 B", "3.4 KiB", "40.0 MiB"
QString byteText(qint64 bytes);
/// "18.2/40.0 MiB": both in the unit of @p total.
QString byteText(qint64 bytes, qint64 total);
/// "93.1 MiB/s"
QString rateText(double bytesPerSecond);
/// "0:07", "12:34", "1:02:03"
QString durationText(qint64 seconds);

#endif // UNITS_H
