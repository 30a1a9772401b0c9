// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The properties of MQTT 5 packets, as Qt's types.

#ifndef PROPERTIES_H
#define PROPERTIES_H

#include <QByteArray>
#include <QString>

typedef struct mqtt5__property mosquitto_property;

namespace zybridge
{

/// A list to be sent; frees itself. @p identifier as in mqtt_protocol.h.
class PropertyList
{
public:
    PropertyList() = default;
    ~PropertyList();

    void add(int identifier, quint32 value);
    void add(int identifier, quint16 value);
    void add(int identifier, const QString &value);
    void add(int identifier, const QByteArray &value);

    const mosquitto_property *get() const { return m_list; }
    /// For calls that take the list over.
    mosquitto_property *get() { return m_list; }
    void release() { m_list = nullptr; }

private:
    Q_DISABLE_COPY(PropertyList)

    mosquitto_property *m_list = nullptr;
};

/// Empty where there is none.
QString responseTopicOf(const mosquitto_property *properties);
QByteArray correlationOf(const mosquitto_property *properties);
/// Seconds; 0 where there is none.
quint32 expiryOf(const mosquitto_property *properties);

} // namespace zybridge

#endif // PROPERTIES_H
