// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Takes the jobs that the broker still holds for a bridge which has gone.

#include "sessionheir.h"

#include "mqtt/topics.h"
#include "peers.h"
#include "printer/station.h"

namespace zybridge
{

namespace
{

constexpr int tickInterval = 1000; // ms
constexpr qint64 quietLimit = 3000; // ms without a message, after which none is left

} // namespace

SessionHeir::SessionHeir(const BrokerSettings &settings, const Peers &peers,
                         const QStringList &groups, QObject *parent)
    : QObject(parent), m_settings(settings), m_peers(peers), m_groups(groups.begin(), groups.end())
{
    m_tick.setInterval(tickInterval);
    connect(&m_tick, &QTimer::timeout, this, &SessionHeir::look);
}

SessionHeir::~SessionHeir() = default;

void SessionHeir::setActive(bool isActive)
{
    m_isActive = isActive;
    if (isActive) {
        m_tick.start();
        return;
    }
    m_tick.stop();
    m_legacies.clear();
    m_done.clear();
}

void SessionHeir::look()
{
    const QStringList offline = m_peers.offlineBridges();
    for (const QString &bridge : offline) {
        if (!m_done.contains(bridge) && m_peers.isHeirOf(bridge))
            takeOver(bridge);
    }
    m_done.intersect(QSet<QString>(offline.begin(), offline.end()));
    endQuietOnes();
}

void SessionHeir::takeOver(const QString &bridge)
{
    m_done.insert(bridge);
    const QStringList groups = m_peers.groupsOf(bridge);
    const QStringList printers = m_peers.printersOf(bridge);
    for (const QString &printer : printers)
        open(bridge, Station::clientId(bridge, printer), groups);
    if (!printers.isEmpty())
        Q_EMIT said(
            QStringLiteral("taking the jobs that wait for %1, which is offline").arg(bridge));
}

void SessionHeir::open(const QString &bridge, const QString &clientId, const QStringList &groups)
{
    MqttConnection::Session session = Station::sessionOf(clientId);
    Legacy &legacy = m_legacies[clientId];
    legacy.bridge = bridge;
    legacy.connection = std::make_unique<MqttConnection>(m_settings, session);
    legacy.quiet.invalidate();
    MqttConnection *connection = legacy.connection.get();
    connect(connection, &MqttConnection::opened, this, [this, clientId, connection, groups] {
        m_legacies.at(clientId).quiet.start();
        for (const QString &group : groups)
            connection->unsubscribe(topics::sharedGroup(group));
    });
    connect(connection, &MqttConnection::received, this,
            [this, connection](const Message &message) { Q_EMIT received(connection, message); });
    // Its bridge is back.
    connect(connection, &MqttConnection::lost, connection, &MqttConnection::close);
    connection->open();
}

void SessionHeir::endQuietOnes()
{
    for (auto it = m_legacies.begin(); it != m_legacies.end();) {
        Legacy &legacy = it->second;
        if (legacy.connection->isHolding())
            legacy.quiet.start();
        // As long as its bridge is away it may take its time to open: nobody tries again.
        if (legacy.quiet.isValid() ? legacy.quiet.hasExpired(quietLimit)
                                   : m_peers.isOnline(legacy.bridge)) {
            legacy.connection->endSession();
            it = m_legacies.erase(it);
        } else {
            ++it;
        }
    }
}

} // namespace zybridge
