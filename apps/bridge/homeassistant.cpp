// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The messages by which Home Assistant finds a printer.

#include "homeassistant.h"

#include "mqtt/topics.h"

#include <QJsonArray>

namespace zybridge
{

namespace
{

struct Sensor {
    const char *key; ///< in zy/<printer>/state
    const char *name;
    const char *icon;
    const char *unit; ///< empty: none
};

constexpr Sensor sensors[] = {
    {"status", "Status", "mdi:printer-3d", ""},
    {"file", "File", "mdi:file", ""},
    {"layer", "Layer", "mdi:layers", ""},
    {"layers", "Layers", "mdi:layers-triple", ""},
    {"remaining", "Remaining", "mdi:timer-sand", "s"},
};

constexpr const char *buttons[] = {"pause", "stop"};

Message discovery(const QString &component, const QString &printer, const QString &object,
                  QJsonObject config)
{
    const QString id = QStringLiteral("zy_%1_%2").arg(printer, object);
    config.insert(QStringLiteral("unique_id"), id);
    config.insert(QStringLiteral("object_id"), id);
    config.insert(QStringLiteral("availability_topic"), topics::ofPrinter(printer, "availability"));
    config.insert(
        QStringLiteral("device"),
        QJsonObject{{QStringLiteral("identifiers"), QJsonArray{QStringLiteral("zy_") + printer}},
                    {QStringLiteral("name"), printer},
                    {QStringLiteral("model"), QStringLiteral("Resin printer")}});
    Message message;
    message.topic = QStringLiteral("homeassistant/%1/%2/config").arg(component, id);
    message.payload = toJson(config);
    message.isRetained = true;
    return message;
}

} // namespace

QVector<Message> homeAssistantMessages(const QString &printer)
{
    QVector<Message> messages;
    for (const Sensor &sensor : sensors) {
        const QString key = QLatin1String(sensor.key);
        QJsonObject config{{QStringLiteral("name"), QLatin1String(sensor.name)},
                           {QStringLiteral("icon"), QLatin1String(sensor.icon)},
                           {QStringLiteral("state_topic"), topics::ofPrinter(printer, "state")},
                           {QStringLiteral("value_template"),
                            QStringLiteral("{{ value_json.%1 | default(none) }}").arg(key)}};
        if (*sensor.unit != '\0') {
            config.insert(QStringLiteral("unit_of_measurement"), QLatin1String(sensor.unit));
            config.insert(QStringLiteral("device_class"), QStringLiteral("duration"));
        }
        messages.append(discovery(QStringLiteral("sensor"), printer, key, config));
    }
    for (const char *button : buttons) {
        const QString word = QLatin1String(button);
        const QString name = word.left(1).toUpper() + word.mid(1);
        messages.append(
            discovery(QStringLiteral("button"), printer, word,
                      {{QStringLiteral("name"), name},
                       {QStringLiteral("command_topic"), topics::ofPrinter(printer, "command")},
                       {QStringLiteral("payload_press"),
                        QString::fromUtf8(toJson({{QStringLiteral("command"), word}}))}}));
    }
    return messages;
}

} // namespace zybridge
