// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One MQTT 5 connection to the broker: what is sent on it, and what libmosquitto says of it.

#include "mqttconnection.h"

#include "properties.h"

#include <utility>

#include <mosquitto.h>
#include <mqtt_protocol.h>

namespace zybridge
{

void MqttConnection::unsubscribe(const QString &filter)
{
    if (m_isOpen)
        mosquitto_unsubscribe(m_client.get(), nullptr, filter.toUtf8().constData());
    write();
}

int MqttConnection::publish(const Message &message)
{
    if (!m_isOpen)
        return 0;
    PropertyList properties;
    if (!message.responseTopic.isEmpty())
        properties.add(MQTT_PROP_RESPONSE_TOPIC, message.responseTopic);
    if (!message.correlation.isEmpty())
        properties.add(MQTT_PROP_CORRELATION_DATA, message.correlation);
    if (message.expiry > 0)
        properties.add(MQTT_PROP_MESSAGE_EXPIRY_INTERVAL, message.expiry);
    int number = 0;
    const int code = mosquitto_publish_v5(
        m_client.get(), &number, message.topic.toUtf8().constData(), int(message.payload.size()),
        message.payload.constData(), 1, message.isRetained, properties.get());
    write();
    return code == MOSQ_ERR_SUCCESS ? number : 0;
}

void MqttConnection::acknowledge(int delivery)
{
    if (!isHolding(delivery))
        return;
    m_isHolding = false;
    write();
}

void MqttConnection::onConnect(mosquitto *, void *self, int reason, int, const mosquitto_property *)
{
    auto *connection = static_cast<MqttConnection *>(self);
    connection->m_endReason = reason;
    connection->m_isOpen = reason == 0;
    if (reason != 0)
        return;
    for (const QString &filter : std::as_const(connection->m_filters))
        mosquitto_subscribe_v5(connection->m_client.get(), nullptr, filter.toUtf8().constData(), 1,
                               0, nullptr);
}

void MqttConnection::onDisconnect(mosquitto *, void *self, int reason, const mosquitto_property *)
{
    auto *connection = static_cast<MqttConnection *>(self);
    // Small numbers are the library's own, large ones the broker's.
    if (reason >= MQTT_RC_UNSPECIFIED)
        connection->m_endReason = reason;
}

void MqttConnection::onMessage(mosquitto *, void *self, const mosquitto_message *message,
                               const mosquitto_property *properties)
{
    auto *connection = static_cast<MqttConnection *>(self);
    Message copy;
    copy.topic = QString::fromUtf8(message->topic);
    copy.payload = QByteArray(static_cast<const char *>(message->payload), message->payloadlen);
    copy.isRetained = message->retain;
    copy.responseTopic = responseTopicOf(properties);
    copy.correlation = correlationOf(properties);
    copy.expiry = expiryOf(properties);
    // One with QoS 0 may come while another is held, and has nothing to acknowledge.
    if (connection->m_session.holdsMessages && message->qos > 0) {
        connection->m_isHolding = true;
        copy.delivery = ++connection->m_delivery;
    }
    connection->m_inbox.append([connection, copy] { Q_EMIT connection->received(copy); });
}

void MqttConnection::onPublish(mosquitto *, void *self, int number, int reason,
                               const mosquitto_property *)
{
    auto *connection = static_cast<MqttConnection *>(self);
    connection->m_inbox.append(
        [connection, number, reason] { Q_EMIT connection->published(number, reason); });
}

} // namespace zybridge
