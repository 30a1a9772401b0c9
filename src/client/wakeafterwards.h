// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A wake-up for the event loops below, after code that may have used theirs up.

#ifndef WAKEAFTERWARDS_H
#define WAKEAFTERWARDS_H

#include <QAbstractEventDispatcher>

namespace zyws
{

/**
 * Wakes the thread's event dispatcher at the end of its scope.
 *
 * QEventLoop::exit() and QCoreApplication::quit() set a flag and wake the dispatcher. Code that
 * then spins the event loop uses up that wake-up, and Qt's own dispatcher, having run the posted
 * event that all this happened in, blocks without a look at the flag.
 */
class WakeAfterwards
{
public:
    WakeAfterwards() = default;
    ~WakeAfterwards()
    {
        if (auto *dispatcher = QAbstractEventDispatcher::instance())
            dispatcher->wakeUp();
    }

private:
    Q_DISABLE_COPY(WakeAfterwards)
};

} // namespace zyws

#endif // WAKEAFTERWARDS_H
