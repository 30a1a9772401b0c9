// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A peer that writes its WebSocket frames byte by byte to a TCP connection.

#ifndef RAWTCPPEER_H
#define RAWTCPPEER_H

#include <QStringList>
#include <QTcpSocket>

#include "waiting.h"

namespace zytest
{

/// For what QWebSocket never does: split, fragment, stop in the middle, vanish by a reset.
class RawTcpPeer
{
public:
    enum Opcode {
        Continuation = 0x0,
        Text = 0x1,
        Binary = 0x2,
        Close = 0x8,
        Ping = 0x9,
        Pong = 0xA,
    };

    /// Connects to @p port of this machine and shakes hands; see isConnected().
    explicit RawTcpPeer(quint16 port);
    ~RawTcpPeer();

    bool isConnected() const { return m_isUpgraded; }
    /// True once the server has ended the TCP connection.
    bool isEnded() const { return m_socket.state() == QAbstractSocket::UnconnectedState; }
    QTcpSocket &socket() { return m_socket; }

    /// One masked frame.
    static QByteArray frame(Opcode opcode, const QByteArray &payload, bool isLast = true);

    /// Hands @p bytes to the system in one write.
    void write(const QByteArray &bytes);
    /// One text message in one frame.
    void sendText(const QByteArray &text) { write(frame(Text, text)); }
    /// One message in as many frames as @p parts.
    void sendFragments(Opcode opcode, const QList<QByteArray> &parts);

    /// Payloads of the text frames that have come and are not yet taken.
    const QStringList &texts() const { return m_texts; }
    /// Waits for the next text and takes it; null when none comes.
    QString takeText();

    /// Ends the connection by a TCP reset, not by an orderly end.
    void reset();

private:
    Q_DISABLE_COPY(RawTcpPeer)
    void read();
    bool readFrame();

    QTcpSocket m_socket;
    QByteArray m_buffer;
    QStringList m_texts;
    bool m_isUpgraded = false;
};

} // namespace zytest

#endif // RAWTCPPEER_H
