// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One MQTT 5 connection to the broker: opening it, losing it, reading and writing.

#include "mqttconnection.h"

#include "properties.h"

#include <QPointer>
#include <QSocketNotifier>

#include <cstring>
#include <utility>

#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace zybridge
{

namespace
{

constexpr int retryPause = 1000; // ms
constexpr int openingLimit = 10; // rounds of the upkeep
constexpr int upkeepInterval = 1000; // ms
constexpr int keepAlive = 15; // s
constexpr int leastReceiveMaximum = 1;
constexpr int probeDelay = 60; // s of silence until TCP asks whether the broker is still there
constexpr int probeInterval = 10; // s, until the system's number of questions had no answer

/// The library is initialised once and, for the sake of no order at the end, never cleaned up.
void initialise()
{
    static const int once = mosquitto_lib_init();
    Q_UNUSED(once)
}

QString errorText(int code)
{
    // What it says about an errno is in errno.
    return QString::fromLocal8Bit(code == MOSQ_ERR_ERRNO ? std::strerror(errno)
                                                         : mosquitto_strerror(code));
}

/// What lies between may forget an idle connection, and one that holds messages sends no pings.
void keepAliveByTcp(int descriptor)
{
    const int yes = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_KEEPALIVE, &yes, sizeof yes);
    setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, &probeDelay, sizeof probeDelay);
    setsockopt(descriptor, IPPROTO_TCP, TCP_KEEPINTVL, &probeInterval, sizeof probeInterval);
}

const char *orNull(const QByteArray &text)
{
    return text.isEmpty() ? nullptr : text.constData();
}

} // namespace

void MqttConnection::Destroy::operator()(mosquitto *client) const
{
    mosquitto_destroy(client);
}

MqttConnection::MqttConnection(const BrokerSettings &broker, const Session &session,
                               QObject *parent)
    : QObject(parent), m_broker(broker), m_session(session)
{
    initialise();
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        m_probe.abort();
        m_probe.connectToHost(m_broker.host, m_broker.port);
        m_upkeepRounds = 0;
        m_upkeep.start(upkeepInterval);
    });
    connect(&m_probe, &QTcpSocket::connected, this, &MqttConnection::connectNow);
    connect(&m_probe, &QTcpSocket::errorOccurred, this, [this] { fail(m_probe.errorString()); });
    connect(&m_upkeep, &QTimer::timeout, this, &MqttConnection::keepUp);
}

MqttConnection::~MqttConnection()
{
    m_probe.disconnect(this);
}

void MqttConnection::open()
{
    m_retry.start(0);
}

void MqttConnection::close()
{
    m_retry.stop();
    m_upkeep.stop();
    m_probe.abort();
    unwatch();
    m_client.reset();
    m_inbox.clear();
    m_isOpen = false;
    m_isHolding = false;
}

void MqttConnection::endSession()
{
    if (m_isOpen && !m_isHolding) {
        PropertyList properties;
        properties.add(MQTT_PROP_SESSION_EXPIRY_INTERVAL, quint32(0));
        mosquitto_disconnect_v5(m_client.get(), 0, properties.get());
        mosquitto_loop_write(m_client.get(), 1);
    }
    close();
}

/// A new client for each connection: nothing of a lost one is sent on the next.
QString MqttConnection::makeClient()
{
    m_client.reset(
        mosquitto_new(m_session.clientId.toUtf8().constData(), !m_session.holdsMessages, this));
    ++m_clients;
    mosquitto *client = m_client.get();
    mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(client, MOSQ_OPT_TCP_NODELAY, 1);
    // Otherwise the library writes by itself, acknowledgements too.
    mosquitto_threaded_set(client, true);
    mosquitto_connect_v5_callback_set(client, &MqttConnection::onConnect);
    mosquitto_disconnect_v5_callback_set(client, &MqttConnection::onDisconnect);
    mosquitto_message_v5_callback_set(client, &MqttConnection::onMessage);
    mosquitto_publish_v5_callback_set(client, &MqttConnection::onPublish);
    if (!m_broker.user.isEmpty())
        mosquitto_username_pw_set(client, m_broker.user.toUtf8().constData(),
                                  m_broker.password.toUtf8().constData());
    const Message &will = m_session.will;
    if (!will.topic.isEmpty()) {
        PropertyList properties;
        if (m_session.willDelay > 0)
            properties.add(MQTT_PROP_WILL_DELAY_INTERVAL, m_session.willDelay);
        // On success the client owns the properties.
        if (mosquitto_will_set_v5(client, will.topic.toUtf8().constData(), int(will.payload.size()),
                                  will.payload.constData(), 1, will.isRetained, properties.get())
            == MOSQ_ERR_SUCCESS)
            properties.release();
    }
    return m_broker.isSecure ? configureTls() : QString();
}

QString MqttConnection::configureTls()
{
    mosquitto *client = m_client.get();
    const QByteArray ca = m_broker.caFile.toLocal8Bit();
    const QByteArray cert = m_broker.certFile.toLocal8Bit();
    const QByteArray key = m_broker.keyFile.toLocal8Bit();
    int code = MOSQ_ERR_SUCCESS;
    if (ca.isEmpty())
        code = mosquitto_int_option(client, MOSQ_OPT_TLS_USE_OS_CERTS, 1);
    // Without a file of the bridge's own the system's directory is looked through.
    if (code == MOSQ_ERR_SUCCESS)
        code = mosquitto_tls_set(client, orNull(ca), ca.isEmpty() ? "/etc/ssl/certs" : nullptr,
                                 orNull(cert), orNull(key), nullptr);
    return code == MOSQ_ERR_SUCCESS ? QString() : errorText(code);
}

void MqttConnection::connectNow()
{
    m_probe.abort();
    m_endReason = 0;
    const QString fault = makeClient();
    if (!fault.isEmpty()) {
        fail(fault);
        return;
    }
    PropertyList properties;
    if (m_session.expiry > 0)
        properties.add(MQTT_PROP_SESSION_EXPIRY_INTERVAL, m_session.expiry);
    if (m_session.holdsMessages)
        properties.add(MQTT_PROP_RECEIVE_MAXIMUM, quint16(leastReceiveMaximum));
    // It blocks, but the probe has just shown that the broker answers.
    const int code = mosquitto_connect_bind_v5(
        m_client.get(), m_broker.host.toUtf8().constData(), m_broker.port,
        m_session.holdsMessages ? 0 : keepAlive, nullptr, properties.get());
    if (code == MOSQ_ERR_SUCCESS)
        watch();
    else
        fail(errorText(code));
}

void MqttConnection::watch()
{
    const int descriptor = mosquitto_socket(m_client.get());
    keepAliveByTcp(descriptor);
    m_readable = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
    m_writable = new QSocketNotifier(descriptor, QSocketNotifier::Write, this);
    connect(m_readable, &QSocketNotifier::activated, this, [this] { read(); });
    connect(m_writable, &QSocketNotifier::activated, this, [this] { write(); });
    write();
}

/// Also in a slot of the notifiers. The library may have closed the socket already.
void MqttConnection::unwatch()
{
    for (QSocketNotifier *notifier : {m_readable, m_writable}) {
        if (!notifier)
            continue;
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
    m_readable = nullptr;
    m_writable = nullptr;
}

void MqttConnection::read()
{
    const QPointer<MqttConnection> self(this);
    const bool wasOpen = m_isOpen;
    const int code = mosquitto_loop_read(m_client.get(), 1);
    if (m_isOpen && !wasOpen) {
        m_lastFailure.clear();
        if (m_session.holdsMessages)
            m_upkeep.stop();
        write(); // the subscriptions, before the first message can come
        Q_EMIT opened();
    }
    // Only now, since a slot may close this connection, and with it the client.
    while (self && !m_inbox.isEmpty())
        m_inbox.takeFirst()();
    if (!self || !m_client)
        return;
    if (code != MOSQ_ERR_SUCCESS)
        drop(m_endReason ? QString::fromLatin1(mosquitto_reason_string(m_endReason))
                         : errorText(code));
    else
        write();
}

void MqttConnection::write()
{
    if (!m_client || m_isHolding)
        return;
    const int code = mosquitto_loop_write(m_client.get(), 1);
    if (code == MOSQ_ERR_SUCCESS) {
        if (m_writable)
            m_writable->setEnabled(mosquitto_want_write(m_client.get()));
        return;
    }
    unwatch();
    // Not inside a slot that publishes; the client may be another by then.
    QMetaObject::invokeMethod(
        this,
        [this, number = m_clients, why = errorText(code)] {
            if (number == m_clients)
                drop(why);
        },
        Qt::QueuedConnection);
}

void MqttConnection::keepUp()
{
    if (!m_isOpen && ++m_upkeepRounds > openingLimit) {
        fail(QStringLiteral("no answer"));
    } else if (m_isOpen) {
        const int code = mosquitto_loop_misc(m_client.get());
        if (code == MOSQ_ERR_SUCCESS)
            write();
        else
            drop(errorText(code));
    }
}

void MqttConnection::drop(const QString &why)
{
    if (!m_client)
        return;
    if (!m_isOpen) {
        fail(why);
        return;
    }
    close();
    m_retry.start(retryPause);
    Q_EMIT lost(why);
}

void MqttConnection::fail(const QString &why)
{
    close();
    m_retry.start(retryPause);
    if (why == m_lastFailure)
        return;
    m_lastFailure = why;
    Q_EMIT failed(why);
}

} // namespace zybridge
