// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How long to wait for what, and how often to try again.

#ifndef TIMELIMITS_H
#define TIMELIMITS_H

/// All times in milliseconds.
struct Limits {
    int connecting = 10000; ///< until the connection is open
    int reply = 30000; ///< until a command is answered
    int check = 120000; ///< until the printer has checked a model
    int stall = 15000; ///< until a chunk is acknowledged
    int retries = 5; ///< failures in a row, without a byte gained, that are tolerated
    int firstBackOff = 1000; ///< before the first retry; doubles with each further one
    int longestBackOff = 30000;
    int pollInterval = 1000; ///< between two questions for the printer's status
};

/// The pause before retry number @p retry (1 is the first).
int backOff(const Limits &limits, int retry);

#endif // TIMELIMITS_H
