// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What people read: amounts, times, the printer's status, events.

#ifndef WORDING_H
#define WORDING_H

#include "event.h"
#include "printerstatus.h"
#include "savedprinters.h"

namespace zyslicer
{

/// "512 B", "3.4 KiB", "40.0 MiB"
QString byteText(qint64 bytes);
/// "18.2/40.0 MiB": both in the unit of @p total.
QString byteText(qint64 bytes, qint64 total);
/// "93.1 MiB/s"
QString rateText(double bytesPerSecond);
/// "0:07", "12:34", "1:02:03"
QString durationText(qint64 seconds);

/// "printing", "complete", …
QString stateText(zysession::PrinterStatus::State state);
/// As layerFraction(), but 1 only once the last layer is done.
double printedFraction(const zysession::PrinterStatus &status);
/// "120 of 400 (30 %)"; empty where the printer names no layers.
QString layerText(const zysession::PrinterStatus &status);
/// "0:12:30" for a count of seconds, any other text as it is.
QString remainingText(const zysession::PrinterStatus &status);
/// "printing demo.zydlp, layer 120 of 400 (30 %), remaining 0:12:30"
QString statusLine(const zysession::PrinterStatus &status);

/// "no acknowledgement for 5 s"
QString silenceText(const Event &event);

/// What an event is to people; empty for what is no news by itself: progress, and the status while
/// a print is followed.
QString eventText(const Event &event, const zysession::Printer &printer);

} // namespace zyslicer

#endif // WORDING_H
