// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One MQTT 5 connection to the broker, by libmosquitto, driven by Qt's event loop.

#ifndef MQTTCONNECTION_H
#define MQTTCONNECTION_H

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTcpSocket>
#include <QTimer>
#include <QVector>

#include <functional>
#include <memory>

class QSocketNotifier;
struct mosquitto;
struct mosquitto_message;
typedef struct mqtt5__property mosquitto_property;

namespace zybridge
{

struct BrokerSettings {
    QString host;
    quint16 port = 0;
    QString user; ///< empty: anonymous
    QString password;
    bool isSecure = false; ///< TLS
    QString caFile; ///< PEM; empty: the system's certificates
    QString certFile; ///< the bridge's own, PEM; may be empty
    QString keyFile; ///< PEM, without a pass phrase
};

/// A message as it comes or is to be sent, always with QoS 1.
struct Message {
    QString topic;
    QByteArray payload;
    bool isRetained = false;
    QString responseTopic;
    QByteArray correlation;
    quint32 expiry = 0; ///< seconds until the broker forgets it; 0: never
    int delivery = 0; ///< names a message that a connection holds; 0: not held
};

/**
 * Connects to the broker, and again whenever the connection is lost.
 *
 * libmosquitto acknowledges a message by itself, but leaves the acknowledgement in its queue until
 * the application lets it write. A connection with Session::holdsMessages does so only when
 * acknowledge() is called, and then takes one message at a time: the broker keeps the message, and
 * delivers it again to whoever connects next with the client identifier. Nothing else can be sent
 * meanwhile, keep-alive packets included, so such a connection has none, and is closed by the
 * application together with one that has.
 */
class MqttConnection : public QObject
{
    Q_OBJECT

public:
    struct Session {
        QString clientId;
        bool holdsMessages = false;
        quint32 expiry = 0; ///< seconds that the broker keeps the session after a loss
        Message will; ///< no topic: none
        quint32 willDelay = 0; ///< seconds
    };

    MqttConnection(const BrokerSettings &broker, const Session &session, QObject *parent = nullptr);
    /// Closes the connection without a word, so that the broker publishes the will.
    ~MqttConnection() override;

    /// Answered by opened(), never inside the call; tries until close().
    void open();
    /// Ends the connection, or the opening of one, without any signal; the broker publishes the
    /// will and keeps the session.
    void close();
    /// Ends the connection and the session, if no message is held; otherwise like close().
    void endSession();
    bool isOpen() const { return m_isOpen; }

    /// For each connection to come.
    void subscribe(const QString &filter) { m_filters.append(filter); }
    /// Of the session that the broker kept.
    void unsubscribe(const QString &filter);
    /// The number by which published() names the message; 0 when there is no connection.
    int publish(const Message &message);

    bool isHolding() const { return m_isHolding; }
    /// False once the message was acknowledged, or went back to the broker with its connection.
    bool isHolding(int delivery) const { return m_isHolding && delivery == m_delivery; }
    /// Does nothing for a message that is not held any more.
    void acknowledge(int delivery);

Q_SIGNALS:
    void opened();
    /// An open connection has ended; @p why in libmosquitto's words. It is being opened again.
    void lost(const QString &why);
    /// No connection came about; said again only when the reason is another.
    void failed(const QString &why);
    void received(const zybridge::Message &message);
    /// The broker's answer to a message. @p reason as in mqtt_protocol.h: 0 when it has taken the
    /// message and has subscribers for it.
    void published(int number, int reason);

private:
    struct Destroy {
        void operator()(mosquitto *client) const;
    };

    QString makeClient();
    QString configureTls();
    void connectNow();
    void watch();
    void unwatch();
    void read();
    void write();
    void drop(const QString &why);
    void fail(const QString &why);
    void keepUp();

    static void onConnect(mosquitto *, void *self, int reason, int flags,
                          const mosquitto_property *);
    static void onDisconnect(mosquitto *, void *self, int reason, const mosquitto_property *);
    static void onMessage(mosquitto *, void *self, const mosquitto_message *message,
                          const mosquitto_property *properties);
    static void onPublish(mosquitto *, void *self, int number, int reason,
                          const mosquitto_property *);

    const BrokerSettings m_broker;
    const Session m_session;
    std::unique_ptr<mosquitto, Destroy> m_client;
    int m_clients = 0; ///< made so far
    QTcpSocket m_probe; ///< finds out, without blocking, whether the broker can be reached
    QTimer m_retry;
    QTimer m_upkeep;
    QSocketNotifier *m_readable = nullptr;
    QSocketNotifier *m_writable = nullptr;
    QStringList m_filters;
    QString m_lastFailure;
    bool m_isOpen = false;
    bool m_isHolding = false;
    int m_delivery = 0;
    QVector<std::function<void()>> m_inbox; ///< signals of the messages just read
    int m_upkeepRounds = 0;
    int m_endReason = 0; ///< of the broker's DISCONNECT or refusal
};

} // namespace zybridge

#endif // MQTTCONNECTION_H
