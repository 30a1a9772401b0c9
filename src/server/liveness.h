// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which peers have fallen silent.

#ifndef LIVENESS_H
#define LIVENESS_H

#include <QElapsedTimer>
#include <QHash>
#include <QTimer>

class QTcpSocket;
class QWebSocket;

namespace zyws
{

/// Pings every connection, and aborts those from which nothing has come for a time.
class Liveness : public QObject // clazy:exclude=missing-qobject-macro
{
public:
    /// @param silence in milliseconds.
    Liveness(int silence, QObject *parent);

    /// From now on, until @p socket is deleted. @p tcp is its TCP connection.
    void watch(QWebSocket *socket, QTcpSocket *tcp);
    /// True when no frame of a message has come from @p socket for the time of silence, answers to
    /// pings or not.
    bool isIdle(QWebSocket *socket) const;

private:
    struct Peer {
        qint64 heard; ///< when its last byte came: a large frame takes long on a slow link
        qint64 spoke; ///< when the last frame of a message came
    };

    void check();
    qint64 now() const;

    const qint64 m_silence;
    QTimer m_timer;
    QElapsedTimer m_sinceCheck;
    qint64 m_checkedAt = 0;
    QHash<QWebSocket *, Peer> m_peers;
};

} // namespace zyws

#endif // LIVENESS_H
