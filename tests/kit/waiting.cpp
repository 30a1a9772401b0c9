// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Waiting for a condition in a real event loop.

#include "waiting.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

namespace zytest
{

bool waitUntil(const std::function<bool()> &condition, int milliseconds)
{
    if (condition())
        return true;
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer poll;
    bool isMet = false;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        isMet = condition();
        if (!isMet && !clock.hasExpired(milliseconds))
            return;
        // Stopped, since it would fire again in a loop nested in this one.
        poll.stop();
        loop.quit();
    });
    poll.start(1);
    loop.exec();
    return isMet;
}

void spinOnce()
{
    // A timer of 0 ms fires after the events that are ready; twice, for those they caused.
    int passes = 0;
    waitUntil([&passes] { return ++passes > 3; });
}

} // namespace zytest
