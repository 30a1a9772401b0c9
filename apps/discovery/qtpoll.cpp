// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Qt's event loop for Avahi's client library.

#include "qtpoll.h"

#include <avahi-common/timeval.h>
#include <avahi-common/watch.h>

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>

// Avahi names both types and leaves it to the event loop what they are. Its library may free either
// in its own callback, so nothing is touched after that.

struct AvahiWatch {
    AvahiWatch(int descriptor, AvahiWatchEvent events, AvahiWatchCallback callback, void *data)
        : readable(descriptor, QSocketNotifier::Read), writable(descriptor, QSocketNotifier::Write)
    {
        update(events);
        const auto on = [=](AvahiWatchEvent event) {
            return [=] {
                happened = event;
                callback(this, descriptor, event, data);
            };
        };
        QObject::connect(&readable, &QSocketNotifier::activated, on(AVAHI_WATCH_IN));
        QObject::connect(&writable, &QSocketNotifier::activated, on(AVAHI_WATCH_OUT));
    }

    void update(AvahiWatchEvent events)
    {
        // The end of a connection is readable as well.
        readable.setEnabled((events & AVAHI_WATCH_IN) != 0);
        writable.setEnabled((events & AVAHI_WATCH_OUT) != 0);
    }

    QSocketNotifier readable;
    QSocketNotifier writable;
    AvahiWatchEvent happened = AvahiWatchEvent(0);
};

struct AvahiTimeout {
    AvahiTimeout(const timeval *time, AvahiTimeoutCallback callback, void *data)
    {
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [=] { callback(this, data); });
        update(time);
    }

    /// @p time by the clock; null: never.
    void update(const timeval *time)
    {
        if (time == nullptr) {
            timer.stop();
            return;
        }
        constexpr AvahiUsec usPerMs = 1000;
        // avahi_age() of a time to come is negative.
        timer.start(int(std::max<AvahiUsec>(0, -avahi_age(time) / usPerMs)));
    }

    QTimer timer;
};

namespace zydiscovery
{

namespace
{

AvahiWatch *newWatch(const AvahiPoll *, int descriptor, AvahiWatchEvent events,
                     AvahiWatchCallback callback, void *data)
{
    return new AvahiWatch(descriptor, events, callback, data);
}

AvahiTimeout *newTimeout(const AvahiPoll *, const timeval *time, AvahiTimeoutCallback callback,
                         void *data)
{
    return new AvahiTimeout(time, callback, data);
}

} // namespace

const AvahiPoll *qtPoll()
{
    static const AvahiPoll poll{
        nullptr,
        newWatch,
        [](AvahiWatch *watch, AvahiWatchEvent events) { watch->update(events); },
        [](AvahiWatch *watch) { return watch->happened; },
        [](AvahiWatch *watch) { delete watch; },
        newTimeout,
        [](AvahiTimeout *timeout, const timeval *time) { timeout->update(time); },
        [](AvahiTimeout *timeout) { delete timeout; },
    };
    return &poll;
}

} // namespace zydiscovery
