// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridges at the broker, as their retained topics describe them.

#include "peers.h"

#include "mqtt/mqttconnection.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>

#include <algorithm>

namespace zybridge
{

Peers::Peers(const QString &self, QObject *parent)
    : QObject(parent), m_self(self),
      m_instance(QString::number(QDateTime::currentMSecsSinceEpoch()) + QLatin1Char('-')
                 + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
}

void Peers::take(const Message &message)
{
    const QStringList levels = message.topic.split(QLatin1Char('/'));
    if (levels.size() == 3 && levels[2] == QLatin1String("availability")) {
        if (message.payload.isEmpty())
            m_printers.remove(levels[1]); // the retained message was deleted
        else
            m_printers.insert(levels[1]);
        return;
    }
    if (levels.size() != 4 || levels[1] != QLatin1String("bridge"))
        return;
    if (message.payload.isEmpty()) {
        m_peers.remove(levels[2]);
    } else if (levels[3] == QLatin1String("availability")) {
        m_peers[levels[2]].isOnline = message.payload == "online";
    } else if (levels[3] == QLatin1String("metrics")) {
        m_peers[levels[2]].metrics = QJsonDocument::fromJson(message.payload).object();
    }
    const bool isTwice = levels[2] == m_self && isTooMany(m_peers.value(m_self).metrics);
    Q_EMIT changed();
    if (isTwice)
        Q_EMIT selfIsTwice();
}

/// What another instance has left may be of one that has ended; what it says later is not. Its
/// clock is compared with itself alone, as this host's may have been wrong. The later of two has to
/// go.
bool Peers::isTooMany(const QJsonObject &metrics)
{
    const QString instance = metrics.value(QLatin1String("instance")).toString();
    if (instance.isEmpty() || instance == m_instance)
        return false;
    const double time = metrics.value(QLatin1String("time")).toDouble();
    const auto known = m_namesakes.constFind(instance);
    if (known == m_namesakes.constEnd()) {
        m_namesakes.insert(instance, time);
        return false;
    }
    return time > *known && instance < m_instance;
}

bool Peers::isOnline(const QString &bridge) const
{
    return bridge == m_self || m_peers.value(bridge).isOnline;
}

bool Peers::isLeader() const
{
    for (auto it = m_peers.cbegin(); it != m_peers.cend() && it.key() < m_self; ++it) {
        if (it->isOnline)
            return false;
    }
    return true;
}

bool Peers::isHeirOf(const QString &bridge) const
{
    const QStringList groups = groupsOf(bridge);
    const auto servesAll = [&](const QString &each) {
        const QStringList own = groupsOf(each);
        return std::all_of(groups.begin(), groups.end(),
                           [&](const QString &group) { return own.contains(group); });
    };
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it) {
        if (isOnline(it.key()) && servesAll(it.key()))
            return it.key() == m_self && !groups.isEmpty();
    }
    return false;
}

int Peers::freeElsewhere(const QString &group) const
{
    int count = 0;
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it) {
        if (it->isOnline && it.key() != m_self)
            count += it->metrics.value(QLatin1String("groups"))
                         .toObject()
                         .value(group)
                         .toObject()
                         .value(QLatin1String("free"))
                         .toInt();
    }
    return count;
}

QStringList Peers::offlineBridges() const
{
    QStringList names;
    for (auto it = m_peers.cbegin(); it != m_peers.cend(); ++it) {
        if (!isOnline(it.key()))
            names.append(it.key());
    }
    return names;
}

QStringList Peers::printersOf(const QString &bridge) const
{
    const QJsonArray names
        = m_peers.value(bridge).metrics.value(QLatin1String("printers")).toArray();
    return QVariant(names.toVariantList()).toStringList();
}

QStringList Peers::groupsOf(const QString &bridge) const
{
    return m_peers.value(bridge).metrics.value(QLatin1String("groups")).toObject().keys();
}

} // namespace zybridge
