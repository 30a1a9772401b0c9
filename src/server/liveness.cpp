// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which peers have fallen silent.

#include "liveness.h"

#include <QPointer>
#include <QTcpSocket>
#include <QWebSocket>

namespace zyws
{

namespace
{

constexpr int checksInSilence = 8;

} // namespace

Liveness::Liveness(int silence, QObject *parent) : QObject(parent), m_silence(silence)
{
    connect(&m_timer, &QTimer::timeout, this, [this] { check(); });
    m_timer.start(qMax(1, silence / checksInSilence));
    m_sinceCheck.start();
}

/// In milliseconds during which the server was awake: time in which a host's slot blocked it does
/// not count against its peers.
qint64 Liveness::now() const
{
    return m_checkedAt + qMin<qint64>(m_sinceCheck.elapsed(), Q_INT64_C(2) * m_timer.interval());
}

void Liveness::watch(QWebSocket *socket, QTcpSocket *tcp)
{
    m_peers.insert(socket, {now(), now()});
    // Looked up each time: the TCP connection may outlive the socket.
    const auto note = [this, socket](qint64 Peer::*what) {
        const auto peer = m_peers.find(socket);
        if (peer != m_peers.end())
            peer.value().*what = now();
    };
    const auto speaks = [note] { note(&Peer::spoke); };
    connect(tcp, &QTcpSocket::readyRead, this, [note] { note(&Peer::heard); });
    connect(socket, &QWebSocket::textFrameReceived, this, speaks);
    connect(socket, &QWebSocket::binaryFrameReceived, this, speaks);
    connect(socket, &QObject::destroyed, this, [this, socket] { m_peers.remove(socket); });
}

bool Liveness::isIdle(QWebSocket *socket) const
{
    const auto peer = m_peers.constFind(socket);
    return peer != m_peers.constEnd() && now() - peer->spoke >= m_silence;
}

void Liveness::check()
{
    m_checkedAt = now();
    m_sinceCheck.restart();
    QList<QPointer<QWebSocket>> sockets;
    const auto all = m_peers.keys();
    for (QWebSocket *socket : all)
        sockets.append(socket);
    for (const QPointer<QWebSocket> &socket : std::as_const(sockets)) {
        if (!socket)
            continue;
        if (m_checkedAt - m_peers.value(socket).heard >= m_silence)
            socket->abort();
        else
            socket->ping();
    }
}

} // namespace zyws
