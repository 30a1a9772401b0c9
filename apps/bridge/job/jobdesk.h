// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Takes jobs, gives each to a free printer, and sees that none is printed twice.

#ifndef JOBDESK_H
#define JOBDESK_H

#include "claims.h"
#include "job.h"
#include "jobledger.h"

#include <map>

namespace zybridge
{

class Peers;

/**
 * A job's request stays unacknowledged on the connection that brought it until the job is settled.
 *
 * Before a bridge places a job it writes it into its ledger and publishes that the job is its own.
 * Before it asks the printer to start, it publishes that, too, and waits until it has heard this
 * from the broker: only then does it know that no other bridge has claimed the job before.
 */
class JobDesk : public QObject
{
    Q_OBJECT

public:
    using Stations = std::map<QString, std::unique_ptr<Station>>;

    JobDesk(const QString &bridge, MqttConnection &broker, const Stations &stations,
            const QMap<QString, QStringList> &groups, const Peers &peers, FileStore &files,
            int uploads, QObject *parent = nullptr);
    ~JobDesk() override;

    /// Goes on with the jobs of the ledger @p file. Empty, or why it cannot be used.
    QString start(const QString &file);

    /// Jobs are placed from now on, or not any more.
    void setActive(bool isActive);
    /// A request that @p connection holds.
    void take(MqttConnection &connection, const Message &message);
    /// zy/jobs/<group>/<job>, from whichever bridge.
    void takeRecord(const Message &message);
    /// All that the broker should know of the own jobs, after a loss.
    void publishAll();
    int freePrinters(const QString &group) const;
    int waitingJobs(const QString &group) const;
    int printsEnded() const { return m_done; }

Q_SIGNALS:
    void said(const QString &line);
    /// The ledger cannot be written: nothing can be promised any more.
    void failed(const QString &why);

private:
    using Jobs = std::map<QString, Job>; ///< by key

    void contradict(const JobRecord &record, Job *own);
    void doubt(JobRecord record);
    void follow(const JobRecord &record, bool counts, Job &job);
    QStringList keysByArrival() const;
    void consider();
    bool mayClaim(const Job &job) const;
    void placeOn(Station &station, Job &job);
    void listen(Placement &placement, const QString &key);
    void resume(Job &job);
    void onThere(const QString &key, const QString &storedName);
    void onNotStarted(const QString &key, const Failure &failure, bool isJobSuspect);
    void onNotFetched(const QString &key, const Failure &failure);
    void putBack(Job &job, const Failure &failure);
    void settle(const QString &key, JobRecord::State state, const Failure &failure);
    void giveUp(const QString &key);
    void release(Job &job);
    bool record(Job &job);
    bool writeDown(const Job &job);
    void publishRecord(const JobRecord &record);
    void handOver();
    void onPublished(int number, int reason);
    void begin(Job &job, Station &station);
    void end(Job &job);
    bool isFree(const QString &printer) const;
    Station *freeStation(const QString &group) const;
    int uploadsUnderWay() const;

    const QString m_bridge;
    MqttConnection &m_broker;
    const Stations &m_stations;
    const QMap<QString, QStringList> m_groups;
    const Peers &m_peers;
    FileStore &m_files;
    const int m_uploads;
    JobLedger m_ledger;
    Claims m_claims;
    Jobs m_jobs;
    int m_arrivals = 0;
    QHash<int, QString> m_lastRecords; ///< on their way to the broker, by number
    QSet<QString> m_occupied; ///< printers that have a job
    QHash<QString, qint64> m_restingUntil; ///< ms since 1970, by printer that did not take a job
    QTimer m_tick;
    QTimer m_soon; ///< until consider(), which then looks at many changes at once
    bool m_isActive = false;
    int m_done = 0; ///< prints that have ended since the start
};

} // namespace zybridge

#endif // JOBDESK_H
