// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Waiting for a condition in a real event loop.

#ifndef WAITING_H
#define WAITING_H

#include <functional>

namespace zytest
{

/// Far more than a loaded machine needs; only a failing test ever waits so long.
inline constexpr int patience = 30000;

/**
 * Runs a nested QEventLoop until @p condition holds; false when it did not within @p milliseconds.
 *
 * Unlike QTest::qWaitFor() this is what an application's own nested loop does, deferred deletions
 * included, so host slots use it to spin.
 */
bool waitUntil(const std::function<bool()> &condition, int milliseconds = patience);

/// Runs a nested QEventLoop until it has nothing more to do at once.
void spinOnce();

} // namespace zytest

#endif // WAITING_H
