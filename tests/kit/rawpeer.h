// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A peer that speaks the protocol by hand over a real WebSocket.

#ifndef RAWPEER_H
#define RAWPEER_H

#include <QJsonObject>
#include <QStringList>
#include <QWebSocket>

#include "waiting.h"

namespace zytest
{

/// Sends what the test gives it and keeps every text that comes back. Judges nothing.
class RawPeer
{
public:
    /// Connects to @p port of this machine and waits until that is done; see isConnected().
    explicit RawPeer(quint16 port);
    /// Closes without waiting.
    ~RawPeer();

    bool isConnected() const;
    QWebSocket &socket() { return m_socket; }

    void send(const QJsonObject &message);
    /// The same with a message spelled as on the wire.
    void send(const QByteArray &text);
    void sendText(const QString &text);
    void sendBinary(const QByteArray &payload);
    /// A data message: @p chunk in its compressed form.
    void sendChunk(const QByteArray &chunk);

    /// Waits until @p count texts are there to be taken.
    bool waitForReplies(qsizetype count, int milliseconds = patience);
    /// Texts not yet taken.
    const QStringList &texts() const { return m_texts; }
    /// Waits for the next text and takes it; null when none comes.
    QString takeText();
    /// Waits for the next reply and takes it; empty when none comes.
    QJsonObject take();
    /// Sends @p request and takes the next reply.
    QJsonObject ask(const QByteArray &request);
    /// True when nothing has come and nothing comes before the answer to a version check sent now,
    /// whatever the host's version is.
    bool expectNothing();

    /// Sends a close frame and waits until the connection has ended.
    bool close();
    /// Sends a close frame and returns at once.
    void beginClose() { m_socket.close(); }
    /// Ends the TCP connection at once, without a close frame.
    void abort() { m_socket.abort(); }

private:
    Q_DISABLE_COPY(RawPeer)

    QWebSocket m_socket;
    QStringList m_texts;
};

} // namespace zytest

#endif // RAWPEER_H
