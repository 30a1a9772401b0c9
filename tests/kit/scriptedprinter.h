// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer's end of the connection under a test's control, on a real WebSocket.

#ifndef SCRIPTEDPRINTER_H
#define SCRIPTEDPRINTER_H

#include <QByteArrayList>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <QVector>
#include <QWebSocket>
#include <QWebSocketProtocol>

#include <optional>

class QWebSocketServer;

namespace zytest
{

/// How a printer that answers transfers by itself does it.
struct TransferRules {
    bool compress = true;
    qint64 offset = 0; ///< bytes it claims to hold already; not 0 gives the resumed form
    int checkState = 1;
    bool acknowledges = true; ///< false: no answer to chunks
    int window = 0; ///< announced, unless 0
};

// A printer's replies, spelled as they travel.
QJsonObject startFileReply(const QJsonObject &request, const TransferRules &rules = {});
QJsonObject startDataReply(const QString &key, qint64 size, qint64 received);
QJsonObject checkDataReply(const QString &key, int checkState);
QJsonObject cancelFileReply();

/// A URL at which nobody listens.
QString deadUrl();

QString compactText(const QJsonObject &message);
QJsonObject objectIn(const QString &text);

/// The printer's side of one transfer: what it answers to START_FILE and to each chunk.
class TransferAnswers
{
public:
    explicit TransferAnswers(const TransferRules &rules) : m_rules(rules) { }

    QJsonObject toStartFile(const QJsonObject &request);
    /// START_DATA, followed by CHECK_DATA when the file is complete.
    QVector<QJsonObject> toChunk(const QByteArray &payload);

private:
    TransferRules m_rules;
    QString m_key;
    qint64 m_size = 0;
    qint64 m_received = 0;
};

/**
 * Records all that clients send it and sends what the test wants.
 *
 * It answers nothing by itself until answerTransfers() is called. Sends go to the connection
 * accepted last. Its signals come from the event loop and not from inside the socket's, so slots
 * may spin.
 */
class ScriptedPrinter : public QObject
{
    Q_OBJECT

public:
    explicit ScriptedPrinter(QObject *parent = nullptr);
    ~ScriptedPrinter() override;

    QUrl url() const;
    quint16 port() const;
    /// No further connections; the port is free again.
    void stopListening();

    int connectionCount() const { return m_connectionCount; }
    /// The connection accepted last; null once it has ended.
    QWebSocket *peer() const { return m_peer; }

    const QStringList &texts() const { return m_texts; }
    /// The texts whose "cmd" is @p command, as objects.
    QVector<QJsonObject> messages(const QString &command) const;
    const QByteArrayList &chunks() const { return m_chunks; }
    /// False: chunks are answered but no longer recorded, for files too large for that.
    void keepChunks(bool keep) { m_keepsChunks = keep; }
    /// Close codes received, in order of the connections' ends.
    const QVector<QWebSocketProtocol::CloseCode> &closeCodes() const { return m_closeCodes; }

    void send(const QJsonObject &message);
    void sendText(const QString &text);
    void close(QWebSocketProtocol::CloseCode code = QWebSocketProtocol::CloseCodeNormal);
    /// Ends the TCP connection without a closing handshake.
    void drop();

    /// From now on answers START_FILE, chunks and CANCEL_FILE by itself.
    void answerTransfers(const TransferRules &rules = {});

Q_SIGNALS:
    void peerConnected();
    void peerDisconnected();
    void textReceived(const QString &text);
    void chunkReceived(const QByteArray &payload);

private:
    QWebSocket &current() const;
    void accept();
    void recordText(const QString &text);
    void recordChunk(const QByteArray &payload);

    QWebSocketServer *m_server;
    QPointer<QWebSocket> m_peer;
    int m_connectionCount = 0;
    QStringList m_texts;
    QByteArrayList m_chunks;
    bool m_keepsChunks = true;
    QVector<QWebSocketProtocol::CloseCode> m_closeCodes;
    std::optional<TransferAnswers> m_answers;
};

} // namespace zytest

#endif // SCRIPTEDPRINTER_H
