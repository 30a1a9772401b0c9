// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Takes the jobs that the broker still holds for a bridge which has gone.

#ifndef SESSIONHEIR_H
#define SESSIONHEIR_H

#include "mqtt/mqttconnection.h"

#include <QElapsedTimer>
#include <QMap>
#include <QSet>

#include <map>
#include <memory>

namespace zybridge
{

class Peers;

/**
 * A broker keeps what a session has not acknowledged, and gives it to nobody else. So one bridge,
 * the first by name, connects with the client identifiers of the bridge that has gone, ends their
 * subscriptions, takes what is left, and ends the sessions. The bridge may come back at any time:
 * the broker then takes the session from the heir.
 */
class SessionHeir : public QObject
{
    Q_OBJECT

public:
    SessionHeir(const BrokerSettings &settings, const Peers &peers, const QStringList &groups,
                QObject *parent = nullptr);
    ~SessionHeir() override;

    void setActive(bool isActive);

Q_SIGNALS:
    /// A request that @p connection holds.
    void received(zybridge::MqttConnection *connection, const zybridge::Message &message);
    void said(const QString &line);

private:
    struct Legacy {
        QString bridge;
        std::unique_ptr<MqttConnection> connection;
        QElapsedTimer quiet; ///< since it was opened, or held a message; invalid before
    };

    void look();
    void takeOver(const QString &bridge);
    void open(const QString &bridge, const QString &clientId, const QStringList &groups);
    void endQuietOnes();

    const BrokerSettings m_settings;
    const Peers &m_peers;
    const QSet<QString> m_groups;
    QTimer m_tick;
    bool m_isActive = false;
    QSet<QString> m_done; ///< bridges whose sessions have been taken over
    std::map<QString, Legacy> m_legacies; ///< by client identifier
};

} // namespace zybridge

#endif // SESSIONHEIR_H
