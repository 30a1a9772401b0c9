// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One printer: its connection, kept open; its status, asked for again and again; its commands.

#include "printerbridge.h"

#include <QPointer>

#include <algorithm>

namespace zybridge
{

using zysession::Exchange;
using zysession::PrinterLink;
using zysession::PrinterStatus;

namespace
{

constexpr int firstPause = 1000; // ms
constexpr int longestPause = 10000; // ms
constexpr zysession::TimeLimits limits{10000, 10000, 120000};

} // namespace

PrinterBridge::PrinterBridge(const zysession::Printer &printer, int polling, QObject *parent)
    : QObject(parent), m_printer(printer), m_link(printer.url, limits), m_statusExchange(m_link),
      m_commandExchange(m_link)
{
    m_link.setTlsTrust(printer.trust());
    m_statusExchange.setToken(printer.token);
    m_commandExchange.setToken(printer.token);
    m_poll.setInterval(polling);
    m_reconnect.setSingleShot(true);
    connect(&m_poll, &QTimer::timeout, this, &PrinterBridge::poll);
    connect(&m_reconnect, &QTimer::timeout, &m_link, &PrinterLink::open);
    connect(&m_link, &PrinterLink::opened, this, [this] {
        m_poll.start();
        poll();
    });
    connect(&m_link, &PrinterLink::failed, this, &PrinterBridge::goOffline);
    connect(&m_link, &PrinterLink::dropped, this, &PrinterBridge::goOffline);
    connect(&m_statusExchange, &Exchange::ended, this, &PrinterBridge::onStatus);
    connect(&m_commandExchange, &Exchange::ended, this, &PrinterBridge::onCommandEnded);
}

void PrinterBridge::start()
{
    m_link.open();
}

void PrinterBridge::moveTo(const QUrl &url)
{
    if (url == m_printer.url)
        return;
    // Whose certificate is checked may not become one that has none.
    if (m_printer.trust().isRestricted() && url.scheme() != QLatin1String("wss"))
        return;
    m_printer.url = url;
    m_link.setUrl(url);
    if (m_isOnline)
        return;
    m_reconnect.stop();
    m_pause = 0;
    m_link.open();
}

bool PrinterBridge::isReady() const
{
    using State = PrinterStatus::State;
    return m_isOnline && m_requests.isEmpty() && !m_status.hasJob()
        && m_status.state != State::TokenRejected && m_status.state != State::Unknown;
}

void PrinterBridge::poll()
{
    if (!m_statusExchange.isUnderWay())
        m_statusExchange.askStatus();
}

void PrinterBridge::onStatus(const Result &result)
{
    if (result.ending == Exchange::Ending::NoAnswer) {
        // A printer may leave the requests of a connection unanswered while it checks for it.
        if (!m_commandExchange.isUnderWay())
            goOffline();
        return;
    }
    if (result.ending == Exchange::Ending::ConnectionLost)
        return; // the link says so itself
    m_pause = 0;
    const PrinterStatus status = PrinterStatus::fromReply(result.answer);
    const bool isNews = !(status == m_status);
    m_status = status;
    setOnline(true);
    if (isNews)
        Q_EMIT statusChanged();
    Q_EMIT statusHeard();
}

void PrinterBridge::goOffline()
{
    m_poll.stop();
    m_statusExchange.abandon();
    m_link.close();
    m_pause = std::clamp(2 * m_pause, firstPause, longestPause);
    m_reconnect.start(m_pause);
    setOnline(false);
}

void PrinterBridge::setOnline(bool isOnline)
{
    if (isOnline == m_isOnline)
        return;
    m_isOnline = isOnline;
    Q_EMIT onlineChanged();
}

void PrinterBridge::ask(const Command &command, const Done &done)
{
    m_requests.enqueue({command, done});
    if (m_requests.size() == 1)
        askNext();
}

void PrinterBridge::askNext()
{
    if (m_requests.isEmpty())
        return;
    const Command &command = m_requests.head().command;
    switch (command.kind) {
    case Command::Kind::Print:
        m_commandExchange.print(command.file);
        break;
    case Command::Kind::Pause:
        m_commandExchange.pause();
        break;
    case Command::Kind::Stop:
        m_commandExchange.stop();
        break;
    case Command::Kind::Set:
        m_commandExchange.set(command.parameters);
        break;
    }
}

void PrinterBridge::onCommandEnded(const Result &result)
{
    const Done done = m_requests.dequeue().done;
    // Its effect is news at once.
    poll();
    done(result);
    if (!m_commandExchange.isUnderWay())
        askNext();
}

} // namespace zybridge
