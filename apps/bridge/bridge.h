// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge: its connection to the broker, its printers, and which message goes to whom.

#ifndef BRIDGE_H
#define BRIDGE_H

#include "configuration.h"
#include "job/jobdesk.h"
#include "job/sessionheir.h"
#include "peers.h"
#include "printer/station.h"
#include "printerbrowser.h"

#include <map>
#include <optional>

namespace zybridge
{

class Bridge : public QObject
{
    Q_OBJECT

public:
    explicit Bridge(const Configuration &configuration, QObject *parent = nullptr);
    ~Bridge() override;

    /// Empty, or why it cannot run.
    QString start();

Q_SIGNALS:
    /// A line for the log.
    void said(const QString &line);
    /// It cannot go on: another bridge has its name.
    void nameTaken();
    /// It cannot go on: the ledger of its jobs cannot be written.
    void ledgerFailed(const QString &why);

private:
    void addStation(const zysession::Printer &printer);
    void lookForPrinters();
    void onFoundChanged();
    void onOpened();
    void onLost(const QString &why);
    void onReceived(const Message &message);
    void answerUnknownPrinter(const Message &message, const QString &printer);
    void takeJobs();
    void takeNoJobs();
    QJsonObject groupMetrics() const;
    void publishMetrics();

    const Configuration m_configuration;
    MqttConnection m_broker;
    FileStore m_files;
    Peers m_peers;
    JobDesk::Stations m_stations; ///< by printer
    std::optional<zydiscovery::PrinterBrowser> m_browser; ///< where a printer has no address
    QString m_browserFault; ///< as said
    JobDesk m_jobs;
    SessionHeir m_heir;
    QTimer m_settle; ///< from the broker's answer until jobs are taken
    QTimer m_metrics;
    QJsonObject m_groupMetrics; ///< as published
    QElapsedTimer m_sinceMetrics;
    int m_brokerLosses = 0;
};

} // namespace zybridge

#endif // BRIDGE_H
