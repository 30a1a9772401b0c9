// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How long the thread of an application that sends is kept from its own work.

#include "clientoptions.h"
#include "processusage.h"

#include <zyfilesender.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTimer>

#include <memory>
#include <utility>

namespace
{

/// The longest time between two ticks of a timer of 1 ms.
class Gap
{
public:
    Gap()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
        m_clock.start();
        m_timer.start(1);
    }
    /// In ms, since the last call.
    double take()
    {
        tick();
        return std::exchange(m_longest, 0);
    }

private:
    void tick()
    {
        m_longest = qMax(m_longest, static_cast<double>(m_clock.nsecsElapsed()) / 1e6);
        m_clock.start();
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_longest = 0;
};

} // namespace

/// Sends the file whole, then once more and deletes the sender in the middle.
int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const zybench::ClientOptions options = zybench::clientOptions(app);
    Gap gap;
    double whole = 0;
    auto first = std::make_unique<ZyFileSender>(options.url, options.file);
    auto second = std::make_unique<ZyFileSender>(options.url, options.file);
    QObject::connect(first.get(), &ZyFileSender::finished, &app, [&](const ZySendResult &result) {
        if (!result.isSent())
            QCoreApplication::exit(1);
        whole = gap.take();
        second->start();
    });
    int acknowledged = 0;
    QObject::connect(second.get(), &ZyFileSender::progress, &app, [&] {
        if (++acknowledged != 5)
            return;
        gap.take();
        second.reset();
        // As long as an abandoned chunk may take, and more.
        QTimer::singleShot(500, &app, [&] {
            zybench::printLine(
                {{QStringLiteral("whole"), whole}, {QStringLiteral("deleted"), gap.take()}});
            QCoreApplication::quit();
        });
    });
    gap.take();
    first->start();
    return QCoreApplication::exec();
}
