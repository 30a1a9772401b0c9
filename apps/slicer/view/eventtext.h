// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a job tells, as a line for people.

#ifndef EVENTTEXT_H
#define EVENTTEXT_H

#include "event.h"
#include "printerlink.h"

/// Empty for what is no news by itself: progress and status while a print is followed.
QString eventText(const Event &event, const Printer &printer);

#endif // EVENTTEXT_H
