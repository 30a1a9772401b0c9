// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// An application that lets a test look at the state after each single event.

#ifndef WATCHFULAPPLICATION_H
#define WATCHFULAPPLICATION_H

#include <QCoreApplication>

#include <functional>
#include <utility>

namespace zytest
{

class WatchfulApplication : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        ++m_depth;
        const bool result = QCoreApplication::notify(receiver, event);
        // Not after those that Qt sends on the way.
        if (--m_depth == 0 && m_check)
            m_check();
        return result;
    }

private:
    friend class AfterEachEvent;

    int m_depth = 0;
    std::function<void()> m_check;
};

/// While it lives, @p check runs after each event that the application delivers.
class AfterEachEvent
{
public:
    explicit AfterEachEvent(std::function<void()> check)
    {
        application().m_check = std::move(check);
    }
    ~AfterEachEvent() { application().m_check = nullptr; }

private:
    Q_DISABLE_COPY(AfterEachEvent)

    static WatchfulApplication &application()
    {
        return *static_cast<WatchfulApplication *>(QCoreApplication::instance());
    }
};

} // namespace zytest

#endif // WATCHFULAPPLICATION_H
