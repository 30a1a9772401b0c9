// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How long the thread of an application that sends is kept from its own work.

#include "clientoptions.h"
#include "processusage.h"

#include <zyfilesender.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QTimer>

#include <functional>
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

/// Sends the file whole, then once more for each way to end a transfer in the middle.
class Measurement
{
public:
    Measurement(QUrl url, QString file) : m_url(std::move(url)), m_file(std::move(file)) { }

    void next()
    {
        if (m_endings.isEmpty()) {
            zybench::printLine(m_gaps);
            QCoreApplication::quit();
            return;
        }
        m_sender = std::make_unique<ZyFileSender>(m_url, m_file);
        m_acknowledged = 0;
        const auto [name, end] = m_endings.takeFirst();
        if (end)
            QObject::connect(m_sender.get(), &ZyFileSender::progress, &m_context,
                             [this, name = name, end = end] { onProgress(name, end); });
        else
            QObject::connect(m_sender.get(), &ZyFileSender::finished, &m_context,
                             [this, name = name](const ZySendResult &result) {
                                 if (!result.isSent())
                                     QCoreApplication::exit(1);
                                 m_gaps.insert(name, m_gap.take());
                                 next();
                             });
        m_gap.take();
        m_sender->start();
    }

private:
    using End = std::function<void(std::unique_ptr<ZyFileSender> &)>;

    void onProgress(const QString &name, const End &end)
    {
        constexpr int middle = 5; // chunks
        if (++m_acknowledged != middle)
            return;
        m_gap.take();
        end(m_sender);
        // As long as an abandoned chunk may take, and more.
        QTimer::singleShot(500, &m_context, [this, name] {
            m_gaps.insert(name, m_gap.take());
            next();
        });
    }

    const QUrl m_url;
    const QString m_file;
    QObject m_context;
    Gap m_gap;
    QJsonObject m_gaps; ///< ms
    QList<QPair<QString, End>> m_endings{
        {QStringLiteral("whole"), {}},
        {QStringLiteral("cancelled"), [](auto &sender) { sender->cancel(); }},
        {QStringLiteral("left"), [](auto &sender) { sender->leave(); }},
        {QStringLiteral("deleted"), [](auto &sender) { sender.reset(); }},
    };
    std::unique_ptr<ZyFileSender> m_sender;
    int m_acknowledged = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const zybench::ClientOptions options = zybench::clientOptions(app);
    Measurement measurement(options.url, options.file);
    measurement.next();
    return QCoreApplication::exec();
}
