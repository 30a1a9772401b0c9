// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the fault tests' programs have in common: events as lines of JSON, and an end with the test.

#ifndef EVENTLINES_H
#define EVENTLINES_H

#include <QJsonObject>

#include <functional>

/// Writes {"event": @p name, …} as one line to standard output, at once. From any thread.
void printEvent(const char *name, QJsonObject details = {});

/// Quits the application when standard input ends, which it does when the test's process does.
/// @p onInput is called when anything comes before that.
void quitWithStandardInput(const std::function<void()> &onInput = [] {});

#endif // EVENTLINES_H
