// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A WebSocket client on a plain socket, so light that the server's time is what one measures.

#ifndef RAWPEER_H
#define RAWPEER_H

#include <QByteArray>

namespace zybench
{

/// Blocking. Anything unexpected throws std::runtime_error, which ends the benchmark.
class RawPeer
{
public:
    /// Connects to the local server on @p port and asks for the upgrade, without waiting for it.
    explicit RawPeer(quint16 port);
    ~RawPeer();
    RawPeer(const RawPeer &) = delete;
    RawPeer &operator=(const RawPeer &) = delete;

    /// Waits for the answer to the upgrade.
    void awaitUpgrade();

    /// Sends bytes as they are; a whole frame, made by maskedTextFrame().
    void send(const QByteArray &frame);

    /// Waits for a whole text message, sent as one frame of less than 64 KiB.
    QByteArray receive();

    int descriptor() const { return m_descriptor; }

private:
    void readMore();

    int m_descriptor;
    QByteArray m_buffer;
};

/// The frame of a text message of less than 64 KiB.
QByteArray maskedTextFrame(const QByteArray &text);

} // namespace zybench

#endif // RAWPEER_H
