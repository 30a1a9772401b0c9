// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One printer: its connection, kept open; its status, asked for again and again; its commands.

#ifndef PRINTERBRIDGE_H
#define PRINTERBRIDGE_H

#include "exchange.h"
#include "savedprinters.h"

#include <QQueue>

namespace zybridge
{

class PrinterBridge : public QObject
{
    Q_OBJECT

public:
    struct Command {
        enum class Kind { Print, Pause, Stop, Set };
        Kind kind = Kind::Print;
        QString file; ///< Print
        zysession::Parameters parameters; ///< Set
    };
    using Result = zysession::Exchange::Result;
    using Done = std::function<void(const Result &)>;

    /// @p polling in milliseconds.
    PrinterBridge(const zysession::Printer &printer, int polling, QObject *parent = nullptr);

    void start();
    /// The printer has this address now, and is connected to there once it is offline.
    void moveTo(const QUrl &url);

    const zysession::Printer &printer() const { return m_printer; }
    const QString &name() const { return m_printer.name; }
    /// Connected, and its status is known.
    bool isOnline() const { return m_isOnline; }
    /// The last one, which an offline printer may have left.
    const zysession::PrinterStatus &status() const { return m_status; }
    /// It is online, and would take a print now as far as its status says.
    bool isReady() const;

    /// Commands go one after the other. @p done is called exactly once, never inside the call, and
    /// may ask again.
    void ask(const Command &command, const Done &done);

Q_SIGNALS:
    /// The printer says something else than before.
    void statusChanged();
    /// Each of its answers to the question for its status, changed or not.
    void statusHeard();
    void onlineChanged();

private:
    struct Request {
        Command command;
        Done done;
    };

    void poll();
    void onStatus(const Result &result);
    void onCommandEnded(const Result &result);
    void askNext();
    void goOffline();
    void setOnline(bool isOnline);

    zysession::Printer m_printer;
    zysession::PrinterLink m_link;
    zysession::Exchange m_statusExchange;
    zysession::Exchange m_commandExchange;
    QTimer m_poll;
    QTimer m_reconnect;
    QQueue<Request> m_requests; ///< the first is under way
    zysession::PrinterStatus m_status;
    int m_pause = 0; ///< ms before the next attempt to connect
    bool m_isOnline = false;
};

} // namespace zybridge

#endif // PRINTERBRIDGE_H
