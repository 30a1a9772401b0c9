// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Everything that belongs to one printer of the bridge, and the requests to it.

#ifndef STATION_H
#define STATION_H

#include "file/filestore.h"
#include "printertopics.h"
#include "statewords.h"

namespace zybridge
{

/// What the stations share. All outlives them.
struct Services {
    const BrokerSettings &settings;
    QString bridge; ///< name
    int polling; ///< ms
    MqttConnection &broker;
    FileStore &files;
};

class Station : public QObject
{
    Q_OBJECT

public:
    /// @p groups: those whose jobs its connection takes.
    Station(const zysession::Printer &printer, const QStringList &groups, const Services &services,
            QObject *parent = nullptr);

    PrinterBridge &printer() { return m_printer; }
    PrinterTopics &topics() { return m_topics; }
    /// The printer's own connection, which is the bridge's to open and close.
    MqttConnection &connection() { return m_connection; }

    /// zy/<printer>/command
    void command(const Message &message);
    /// zy/<printer>/send
    void send(const Message &message);

    /// The client identifier of the connection of @p printer of @p bridge.
    static QString clientId(const QString &bridge, const QString &printer);
    /// Its session, without a will.
    static MqttConnection::Session sessionOf(const QString &clientId);

private:
    void sendFile(const QString &path, const FileRequest &file, bool isToPrint,
                  const Message &message);
    void print(const QString &name, const Message &message);
    void answer(const Message &message, const Failure &failure, QJsonObject details = {});

    const Services m_services;
    PrinterBridge m_printer;
    MqttConnection m_connection;
    PrinterTopics m_topics;
};

} // namespace zybridge

#endif // STATION_H
