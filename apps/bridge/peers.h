// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridges at the broker, as their retained topics describe them.

#ifndef PEERS_H
#define PEERS_H

#include <QHash>
#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>

namespace zybridge
{

struct Message;

class Peers : public QObject
{
    Q_OBJECT

public:
    /// @p self: the own bridge, which counts as online.
    explicit Peers(const QString &self, QObject *parent = nullptr);

    /// Takes zy/bridge/<name>/… and zy/<printer>/availability; others are ignored.
    void take(const Message &message);

    /// Differs for each start of a bridge; to be published in its metrics.
    const QString &instance() const { return m_instance; }

    bool isOnline(const QString &bridge) const;
    /// False for a name that no retained topic has mentioned.
    bool isPrinterKnown(const QString &printer) const { return m_printers.contains(printer); }
    /// The one that does what has to be done once: the first by name of those online.
    bool isLeader() const;
    /// The one that takes over the jobs of @p bridge: the first by name of those that serve all its
    /// groups. Its metrics say which; without groups nobody is.
    bool isHeirOf(const QString &bridge) const;
    /// Printers of @p group that are free at other bridges which are online.
    int freeElsewhere(const QString &group) const;

    QStringList offlineBridges() const;
    /// The printers of @p bridge, as its last metrics name them.
    QStringList printersOf(const QString &bridge) const;
    QStringList groupsOf(const QString &bridge) const;

Q_SIGNALS:
    void changed();
    /// A bridge that was started before has the own name: both throw each other out, and meet only
    /// in the metrics.
    void selfIsTwice();

private:
    struct Peer {
        bool isOnline = false;
        QJsonObject metrics;
    };

    bool isTooMany(const QJsonObject &metrics);

    const QString m_self;
    const QString m_instance; ///< of two, that of the one started later comes after
    QHash<QString, double> m_namesakes; ///< the first time that each instance gave
    QMap<QString, Peer> m_peers; ///< the own one too
    QSet<QString> m_printers;
};

} // namespace zybridge

#endif // PEERS_H
