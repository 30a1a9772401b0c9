// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the broker hears of one printer: state, availability, events.

#ifndef PRINTERTOPICS_H
#define PRINTERTOPICS_H

#include "mqtt/mqttconnection.h"
#include "printerbridge.h"

#include <QElapsedTimer>

namespace zybridge
{

/**
 * The printer has a connection of its own to the broker besides the bridge's: its last will says
 * that the printer is not available, and jobs come on it.
 */
class PrinterTopics : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the object. @p broker is the bridge's connection, @p own the printer's.
    PrinterTopics(PrinterBridge &printer, MqttConnection &broker, MqttConnection &own,
                  QObject *parent = nullptr);

    /// The will of the printer's own connection.
    static Message will(const QString &printer);

    /// The job that is being printed; empty when none is.
    void setJob(const QString &job);
    /// Publishes all that is retained.
    void publishAll();
    void publishEvent(const QString &event, QJsonObject details = {});

private:
    void onStatusChanged();
    void onOnlineChanged();
    void publishState();
    void publishAvailability();

    PrinterBridge &m_printer;
    MqttConnection &m_broker;
    MqttConnection &m_own;
    QString m_job;
    QString m_word; ///< of the status that was published last
    QJsonObject m_published; ///< without what changes all the time
    QElapsedTimer m_sincePublished;
};

} // namespace zybridge

#endif // PRINTERTOPICS_H
