// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the broker hears of one printer: state, availability, events.

#include "printertopics.h"

#include "mqtt/topics.h"
#include "statewords.h"

namespace zybridge
{

namespace
{

constexpr qint64 remainingInterval = 5000; // ms between messages that bring only another time

} // namespace

PrinterTopics::PrinterTopics(PrinterBridge &printer, MqttConnection &broker, MqttConnection &own,
                             QObject *parent)
    : QObject(parent), m_printer(printer), m_broker(broker), m_own(own)
{
    connect(&printer, &PrinterBridge::statusChanged, this, &PrinterTopics::onStatusChanged);
    connect(&printer, &PrinterBridge::onlineChanged, this, &PrinterTopics::onOnlineChanged);
    // Only now can the will of an earlier connection no longer come after it.
    connect(&own, &MqttConnection::opened, this, &PrinterTopics::publishAvailability);
    connect(&broker, &MqttConnection::opened, this, &PrinterTopics::publishAll);
}

Message PrinterTopics::will(const QString &printer)
{
    Message message;
    message.topic = topics::ofPrinter(printer, "availability");
    message.payload = "offline";
    message.isRetained = true;
    return message;
}

void PrinterTopics::setJob(const QString &job)
{
    if (job == m_job)
        return;
    m_job = job;
    publishState();
}

void PrinterTopics::publishAll()
{
    publishState();
    publishAvailability();
}

void PrinterTopics::publishEvent(const QString &event, QJsonObject details)
{
    details.insert(QStringLiteral("event"), event);
    details.insert(QStringLiteral("time"), now());
    Message message;
    message.topic = topics::ofPrinter(m_printer.name(), "event");
    message.payload = toJson(details);
    m_broker.publish(message);
}

void PrinterTopics::onStatusChanged()
{
    QJsonObject state = stateObject(m_printer.status());
    state.remove(QStringLiteral("remaining"));
    if (state == m_published && !m_sincePublished.hasExpired(remainingInterval))
        return;
    publishState();
    const QString word = statusWord(m_printer.status().state);
    if (word != m_word)
        publishEvent(QStringLiteral("status"),
                     {{QStringLiteral("from"), m_word}, {QStringLiteral("to"), word}});
    m_word = word;
}

void PrinterTopics::onOnlineChanged()
{
    publishAvailability();
    publishEvent(m_printer.isOnline() ? QStringLiteral("online") : QStringLiteral("offline"));
}

void PrinterTopics::publishState()
{
    if (!m_printer.isOnline())
        return; // the last known one stays
    QJsonObject state = stateObject(m_printer.status());
    m_published = state;
    m_published.remove(QStringLiteral("remaining"));
    m_sincePublished.start();
    if (!m_job.isEmpty())
        state.insert(QStringLiteral("job"), m_job);
    state.insert(QStringLiteral("time"), now());
    Message message;
    message.topic = topics::ofPrinter(m_printer.name(), "state");
    message.payload = toJson(state);
    message.isRetained = true;
    m_broker.publish(message);
}

void PrinterTopics::publishAvailability()
{
    if (!m_own.isOpen())
        return; // the will may still come; see the constructor
    Message message = will(m_printer.name());
    if (m_printer.isOnline())
        message.payload = "online";
    m_broker.publish(message);
}

} // namespace zybridge
