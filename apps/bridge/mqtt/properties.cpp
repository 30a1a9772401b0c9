// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The properties of MQTT 5 packets, as Qt's types.

#include "properties.h"

#include <cstdlib>

#include <mosquitto.h>
#include <mqtt_protocol.h>

namespace zybridge
{

PropertyList::~PropertyList()
{
    mosquitto_property_free_all(&m_list);
}

void PropertyList::add(int identifier, quint32 value)
{
    mosquitto_property_add_int32(&m_list, identifier, value);
}

void PropertyList::add(int identifier, quint16 value)
{
    mosquitto_property_add_int16(&m_list, identifier, value);
}

void PropertyList::add(int identifier, const QString &value)
{
    mosquitto_property_add_string(&m_list, identifier, value.toUtf8().constData());
}

void PropertyList::add(int identifier, const QByteArray &value)
{
    mosquitto_property_add_binary(&m_list, identifier, value.constData(), quint16(value.size()));
}

QString responseTopicOf(const mosquitto_property *properties)
{
    char *text = nullptr;
    mosquitto_property_read_string(properties, MQTT_PROP_RESPONSE_TOPIC, &text, false);
    QString topic = QString::fromUtf8(text);
    std::free(text);
    return topic;
}

QByteArray correlationOf(const mosquitto_property *properties)
{
    void *data = nullptr;
    quint16 size = 0;
    mosquitto_property_read_binary(properties, MQTT_PROP_CORRELATION_DATA, &data, &size, false);
    QByteArray correlation(static_cast<const char *>(data), size);
    std::free(data);
    return correlation;
}

quint32 expiryOf(const mosquitto_property *properties)
{
    quint32 seconds = 0;
    mosquitto_property_read_int32(properties, MQTT_PROP_MESSAGE_EXPIRY_INTERVAL, &seconds, false);
    return seconds;
}

} // namespace zybridge
