// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's end that does the WebSocket protocol by hand, so that a test decides every byte.

#ifndef RAWPRINTER_H
#define RAWPRINTER_H

#include <QByteArrayList>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTcpSocket>
#include <QUrl>
#include <QVector>

class QTcpServer;

namespace zytest
{

/**
 * Records what the one client sends and writes what the test wants, where a TCP segment
 * begins and ends included. A new connection replaces the one before.
 *
 * Answers the opening handshake, and pings and closes as far as it is set to; nothing else. Its
 * signals come from the event loop, so slots may spin.
 */
class RawPrinter : public QObject
{
    Q_OBJECT

public:
    explicit RawPrinter(QObject *parent = nullptr);
    ~RawPrinter() override;

    QUrl url() const;
    quint16 port() const;
    /// The client's port of the current connection.
    quint16 peerPort() const;
    int connectionCount() const { return m_connectionCount; }
    bool isPeerConnected() const;

    const QStringList &texts() const { return m_texts; }
    const QByteArrayList &chunks() const { return m_chunks; }
    const QByteArrayList &pings() const { return m_pings; }
    /// Close codes in the client's close frames.
    const QVector<int> &closeCodes() const { return m_closeCodes; }

    void setAnswersPings(bool answers) { m_answersPings = answers; }
    void setAnswersClose(bool answers) { m_answersClose = answers; }
    /// Bytes to follow the handshake's answer in the same segment.
    void setGreeting(const QByteArray &frames) { m_greeting = frames; }

    static QByteArray textFrame(const QString &text);
    static QByteArray textFrame(const QJsonObject &message);
    static QByteArray closeFrame(int code);

    /// Writes @p bytes as one segment, so far as the kernel allows.
    void write(const QByteArray &bytes);
    /// Writes @p bytes in two segments, the second once the client has read all of the first.
    void writeSplit(const QByteArray &bytes, int position);
    /// Writes @p bytes in segments of one byte, each once the client has read the one before.
    void writeByteByByte(const QByteArray &bytes);
    void send(const QJsonObject &message) { write(textFrame(message)); }

    /// Leaves to the system what comes on the current connection.
    void stopReading();

    /// Ends the TCP connection in order, without a closing handshake.
    void drop();
    /// Says that nothing more will come. The connection ends when the client has read all that
    /// came: drop() would throw away what it has not read yet once it writes.
    void hangUp();
    /// Resets the TCP connection.
    void reset();

Q_SIGNALS:
    void peerConnected();
    void peerDisconnected();
    void textReceived(const QString &text);
    void chunkReceived(const QByteArray &payload);

private:
    QTcpSocket &current() const;
    void accept();
    void onReadyRead();
    bool readHandshake();
    bool readFrame();
    void handleFrame(int opcode, bool isFinal, const QByteArray &payload);
    void writeOnceRead(const QByteArrayList &segments);

    QTcpServer *m_server;
    QPointer<QTcpSocket> m_peer;
    QByteArray m_incoming;
    QByteArray m_message;
    int m_messageOpcode = 0;
    bool m_isOpen = false;
    bool m_answersPings = true;
    bool m_answersClose = true;
    int m_connectionCount = 0;
    QByteArray m_greeting;
    QStringList m_texts;
    QByteArrayList m_chunks;
    QByteArrayList m_pings;
    QVector<int> m_closeCodes;
};

} // namespace zytest

#endif // RAWPRINTER_H
