// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the configuration file says, and what is wrong with it.

#ifndef CONFIGURATION_H
#define CONFIGURATION_H

#include "mqtt/mqttconnection.h"
#include "savedprinters.h"

#include <QMap>
#include <QStringList>
#include <QVector>

namespace zybridge
{

/// All times in milliseconds.
struct Configuration {
    QString name; ///< of the bridge, unique at its broker
    QString spool; ///< directory of the files that may be sent; empty: none
    QString stateDirectory; ///< of the ledger and of fetched files
    int polling = 500; ///< how often each printer is asked for its status
    int settling = 2000; ///< after the broker is reached, until jobs are taken
    int uploads = 8; ///< files sent for jobs at a time
    bool announcesToHomeAssistant = false;
    BrokerSettings broker;
    QVector<zysession::Printer> printers; ///< without a URL those that are to be found by a name
    QMap<QString, QStringList> groups; ///< printers by the name of their group

    QStringList groupsOf(const QString &printer) const;

    /// The lines of what is wrong with the file, "what: value; remedy"; empty when nothing is.
    QStringList read(const QString &file);
};

} // namespace zybridge

#endif // CONFIGURATION_H
