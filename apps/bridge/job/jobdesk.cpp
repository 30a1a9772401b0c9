// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Takes jobs and their records from the broker, and gives jobs to free printers.

#include "jobdesk.h"

#include "moment.h"
#include "mqtt/topics.h"
#include "peers.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>

namespace zybridge
{

namespace
{

using State = JobRecord::State;

constexpr int tickInterval = 1000; // ms
constexpr int considerDelay = 20; // ms
/// A bridge that is back so soon has crashed, and its printers have been on meanwhile.
constexpr qint64 restartTime = 60000; // ms

} // namespace

QString Job::read(const QString &group, const QByteArray &payload)
{
    const QJsonObject object = QJsonDocument::fromJson(payload).object();
    request = payload;
    record.group = group;
    record.id = object.value(QLatin1String("id")).toString();
    if (!isJobName(record.id))
        return QStringLiteral("\"id\" has to be 1 to 64 letters, digits, '-' and '_'");
    return file.read(object, {{QStringLiteral("id"), QJsonValue::String}});
}

void Job::dropLostCopies()
{
    const auto isLost = [](const Copy &each) {
        return !each.connection || !each.connection->isHolding(each.message.delivery);
    };
    copies.erase(std::remove_if(copies.begin(), copies.end(), isLost), copies.end());
}

JobDesk::JobDesk(const QString &bridge, MqttConnection &broker, const Stations &stations,
                 const QMap<QString, QStringList> &groups, const Peers &peers, FileStore &files,
                 int uploads, QObject *parent)
    : QObject(parent), m_bridge(bridge), m_broker(broker), m_stations(stations), m_groups(groups),
      m_peers(peers), m_files(files), m_uploads(uploads)
{
    m_tick.setInterval(tickInterval);
    connect(&m_tick, &QTimer::timeout, this, [this] {
        consider();
        handOver();
    });
    m_soon.setInterval(considerDelay);
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &JobDesk::consider);
    connect(&peers, &Peers::changed, &m_soon, qOverload<>(&QTimer::start));
    connect(&broker, &MqttConnection::published, this, &JobDesk::onPublished);
}

JobDesk::~JobDesk() = default;

QString JobDesk::start(const QString &file)
{
    QString fault = m_ledger.open(file);
    if (!fault.isEmpty())
        return fault;
    for (const JobLedger::Entry &entry : m_ledger.unfinished()) {
        Job &job = m_jobs[entry.record.key()];
        job.read(entry.record.group, entry.request);
        job.record = entry.record;
        job.arrival = ++m_arrivals;
        job.isOwn = true;
        job.asked = entry.asked;
        // Nothing to find out: the file may as well go to another printer.
        if (job.record.state == State::Starting && job.asked.isEmpty())
            job.record.state = State::Placing;
        if (job.record.state != State::Placing)
            resume(job);
    }
    for (const auto &each : m_stations) {
        const PrinterBridge *printer = &each.second->printer();
        connect(printer, &PrinterBridge::statusChanged, &m_soon, qOverload<>(&QTimer::start));
        connect(printer, &PrinterBridge::onlineChanged, &m_soon, qOverload<>(&QTimer::start));
    }
    m_tick.start();
    return {};
}

/// A job that a bridge of this name has started, or was about to, before it ended.
void JobDesk::resume(Job &job)
{
    const auto station = m_stations.find(job.record.printer);
    if (station == m_stations.end()) {
        settle(job.record.key(), State::Doubtful,
               {QStringLiteral("doubtful"),
                QStringLiteral("its printer is not the bridge's any more")});
        return;
    }
    begin(job, *station->second);
    if (job.record.state == State::Starting)
        job.placement->findOut(job.record.file, job.record.before,
                               isRecent(job.asked, restartTime));
    else
        job.placement->watch(job.record.file);
    station->second->topics().setJob(job.record.id);
}

void JobDesk::setActive(bool isActive)
{
    m_isActive = isActive;
    if (!isActive) {
        // A lost broker says nothing of what was on the way to it.
        m_lastRecords.clear();
        for (auto &each : m_jobs) {
            each.second.handOver = 0;
            each.second.leaving.clear();
        }
    }
    consider();
}

void JobDesk::take(MqttConnection &connection, const Message &message)
{
    Job fresh;
    Failure failure;
    if (requestObject(message.payload, failure.word, failure.text)) {
        const QString fault
            = fresh.read(message.topic.section(QLatin1Char('/'), 2), message.payload);
        if (!fault.isEmpty())
            failure = {QStringLiteral("malformed"), fault};
    }
    // The broker has forgotten it already.
    if (failure.isNone() && !connection.isHolding(message.delivery))
        failure = {QStringLiteral("qos"), QStringLiteral("publish jobs with QoS 1")};
    if (!failure.isNone()) {
        Q_EMIT said(
            QStringLiteral("a job of %1 was not taken: %2").arg(message.topic, failure.text));
        respond(m_broker, message, failedAnswer(failure.word, failure.text));
        connection.acknowledge(message.delivery);
        return;
    }
    const QString key = fresh.record.key();
    auto job = m_jobs.find(key);
    if (job == m_jobs.end()) {
        // A job that is over is only in the ledger.
        if (const auto entry = m_ledger.find(key))
            fresh.record = entry->record;
        fresh.arrival = ++m_arrivals;
        job = m_jobs.emplace(key, std::move(fresh)).first;
    }
    job->second.copies.append({&connection, message});
    consider();
}

void JobDesk::publishAll()
{
    for (const auto &each : m_jobs) {
        if (each.second.isOwn)
            publishRecord(each.second.record);
    }
    for (const JobLedger::Entry &entry : m_ledger.unpublished())
        publishRecord(entry.record);
}

/// The oldest first.
QStringList JobDesk::keysByArrival() const
{
    QMap<int, QString> keys;
    for (const auto &each : m_jobs)
        keys.insert(each.second.arrival, each.first);
    return keys.values();
}

/// Looks at all that waits.
void JobDesk::consider()
{
    for (const QString &key : keysByArrival()) {
        const auto found = m_jobs.find(key);
        if (found == m_jobs.end())
            continue;
        Job &job = found->second;
        job.dropLostCopies();
        const auto claim = m_claims.find(key);
        if (!job.isOwn && claim && claim->isSettled())
            job.record = *claim;
        if (!job.record.bridge.isEmpty() && job.record.isSettled()) {
            release(job);
            if (!job.isOwn || job.record.isOver())
                m_jobs.erase(key);
        } else if (!job.isOwn && job.copies.isEmpty() && job.handOver == 0) {
            m_jobs.erase(key);
        } else if (!job.isOwn && claim && claim->state == State::Starting
                   && !m_peers.isOnline(claim->bridge)) {
            // Only that bridge can say what has become of it, and knows it from its ledger. What
            // the broker has queued after it need not wait.
            for (const Job::Copy &copy : job.copies + job.leaving)
                copy.acknowledge();
            m_jobs.erase(key);
        } else if (m_isActive && !job.placement && job.handOver == 0 && job.rest.hasExpired()
                   && mayClaim(job)) {
            if (Station *station = freeStation(job.record.group))
                placeOn(*station, job);
        }
    }
}

/// Another bridge that has the file at a printer only has to have gone; one that was about to start
/// has to come back and say what became of it.
bool JobDesk::mayClaim(const Job &job) const
{
    const auto claim = m_claims.find(job.record.key());
    return job.isOwn || !claim
        || (claim->state == State::Placing
            && (claim->bridge == m_bridge || !m_peers.isOnline(claim->bridge)));
}

void JobDesk::placeOn(Station &station, Job &job)
{
    const auto claim = m_claims.find(job.record.key());
    if (!job.isOwn && claim)
        job.record.epoch = claim->epoch + 1;
    job.isOwn = true;
    job.asked.clear();
    job.record.bridge = m_bridge;
    job.record.printer = station.printer().name();
    job.record.state = State::Placing;
    if (!record(job))
        return;
    Q_EMIT said(QStringLiteral("job %1 goes to %2").arg(job.record.key(), job.record.printer));
    begin(job, station);
    const QString suffix = QFileInfo(job.file.name).suffix();
    // Under a name that says which job it is.
    job.placement->begin(
        job.file, suffix.isEmpty() ? job.record.id : job.record.id + QLatin1Char('.') + suffix);
}

void JobDesk::begin(Job &job, Station &station)
{
    job.placement = std::make_unique<Placement>(station, m_files);
    m_occupied.insert(station.printer().name());
    listen(*job.placement, job.record.key());
}

/// Also in a slot of the placement. The printer is free a moment later.
void JobDesk::end(Job &job)
{
    if (!job.placement)
        return;
    Placement *placement = job.placement.release();
    placement->disconnect(this);
    placement->setParent(this);
    connect(placement, &QObject::destroyed, this,
            [this, printer = placement->station().printer().name()] {
                m_occupied.remove(printer);
                m_soon.start();
            });
    placement->leave();
}

void JobDesk::listen(Placement &placement, const QString &key)
{
    connect(&placement, &Placement::isThere, this,
            [this, key](const QString &storedName) { onThere(key, storedName); });
    connect(&placement, &Placement::started, this,
            [this, key] { settle(key, State::Printing, {}); });
    connect(&placement, &Placement::notStarted, this,
            [this, key](const Failure &failure, bool isJobSuspect) {
                onNotStarted(key, failure, isJobSuspect);
            });
    connect(&placement, &Placement::notFetched, this,
            [this, key](const Failure &failure) { onNotFetched(key, failure); });
    connect(&placement, &Placement::refused, this,
            [this, key](const Failure &failure) { settle(key, State::Refused, failure); });
    connect(&placement, &Placement::over, this, [this, key](State state, const QString &text) {
        settle(key, state, {{}, text});
    });
}

bool JobDesk::isFree(const QString &printer) const
{
    const auto station = m_stations.find(printer);
    if (station == m_stations.end() || !station->second->printer().isReady()
        || m_occupied.contains(printer))
        return false;
    return m_restingUntil.value(printer) <= QDateTime::currentMSecsSinceEpoch();
}

Station *JobDesk::freeStation(const QString &group) const
{
    if (uploadsUnderWay() >= m_uploads)
        return nullptr;
    const QStringList members = m_groups.value(group);
    const auto found = std::find_if(members.begin(), members.end(),
                                    [this](const QString &each) { return isFree(each); });
    return found == members.end() ? nullptr : m_stations.at(*found).get();
}

int JobDesk::uploadsUnderWay() const
{
    return int(std::count_if(m_jobs.begin(), m_jobs.end(), [](const auto &each) {
        return each.second.placement && each.second.placement->isBringing();
    }));
}

} // namespace zybridge
