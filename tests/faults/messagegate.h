// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A TCP proxy that knows where WebSocket messages begin and end, and holds them back.

#ifndef MESSAGEGATE_H
#define MESSAGEGATE_H

#include <QByteArray>
#include <QObject>
#include <QUrl>

class QTcpServer;
class QTcpSocket;

namespace zytest
{

/**
 * Sits between one client, which connects to url(), and a printer. Numbers the messages of both
 * directions in the order in which they come by, from 0; a transfer is stop-and-wait, so that order
 * is always the same. Control frames are passed on uncounted.
 */
class MessageGate : public QObject
{
    Q_OBJECT

public:
    explicit MessageGate(quint16 printerPort, QObject *parent = nullptr);
    ~MessageGate() override;

    QUrl url() const;

    /// Connections from now on go to this printer.
    void setPrinterPort(quint16 port) { m_printerPort = port; }

    /// Stands still as soon as message @p number has begun to arrive, before any of it has left.
    void holdBefore(int number);
    /// Stands still once message @p number has left whole.
    void holdAfter(int number);
    /// Goes on with what is held.
    void release();
    /// Drops what is held with its connection; connections from now on are passed on freely.
    void open();

Q_SIGNALS:
    /// The gate stands still; emitted once.
    void reached();
    void released();

private:
    class Lane;

    void accept();
    void hold();
    bool isHeld() const { return m_isHeld; }

    QTcpServer *m_server;
    quint16 m_printerPort;
    int m_messageCount = 0; ///< messages that have begun
    int m_holdBefore = -1;
    int m_holdAfter = -1;
    bool m_isHeld = false;
    QList<QObject *> m_links;
};

} // namespace zytest

#endif // MESSAGEGATE_H
