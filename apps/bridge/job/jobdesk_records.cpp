// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What becomes of a job: its record in the ledger and at the broker, its answer, its end.

#include "jobdesk.h"

#include "moment.h"
#include "mqtt/topics.h"
#include "peers.h"

#include <QDateTime>
#include <QJsonDocument>

#include <algorithm>
#include <utility>

#include <mqtt_protocol.h>

namespace zybridge
{

namespace
{

using State = JobRecord::State;

constexpr qint64 restAfterFailure = 10000; // ms
constexpr int firstRestAfterFetching = 1000; // ms
constexpr int mostDoublings = 5; // of that
constexpr qint64 longestFetching = 600000; // ms
constexpr int suspicionLimit = 3;
constexpr quint32 recordExpiry = 7 * 24 * 3600; // s that the broker keeps what is over

QJsonObject answerOf(const JobRecord &record)
{
    QJsonObject answer = record.toJson();
    answer.insert(QStringLiteral("ok"),
                  record.isSettled() && record.state != State::Refused
                      && record.state != State::Doubtful);
    return answer;
}

} // namespace

void JobDesk::takeRecord(const Message &message)
{
    const QStringList levels = message.topic.split(QLatin1Char('/'));
    const QString key = levels.value(2) + QLatin1Char('/') + levels.value(3);
    if (message.payload.isEmpty()) {
        m_claims.forget(key);
        return;
    }
    const auto record
        = JobRecord::fromJson(levels.value(2), QJsonDocument::fromJson(message.payload).object());
    if (!record || record->key() != key)
        return;
    const bool counts = m_claims.take(*record);
    const auto job = m_jobs.find(key);
    Job *own = job != m_jobs.end() && job->second.isOwn ? &job->second : nullptr;
    if (!counts)
        contradict(*record, own);
    else if (!own && record->bridge == m_bridge && record->state == State::Starting)
        doubt(*record);
    if (own)
        follow(*record, counts, *own);
}

/// What the broker retains has to count; see Claims.
void JobDesk::contradict(const JobRecord &record, Job *own)
{
    JobRecord claim = *m_claims.find(record.key());
    const bool isOurs = claim.bridge == m_bridge;
    if (!isOurs && record.bridge != m_bridge
        && (claim.bridge != record.bridge || claim.epoch != record.epoch))
        return;
    JobRecord &known = own && isOurs ? own->record : claim;
    const bool isRival = isOurs && record.bridge != m_bridge && record.epoch == known.epoch;
    if (isRival)
        ++known.epoch;
    if (isRival && own)
        this->record(*own);
    else
        publishRecord(known);
}

/// A bridge of this name was about to start the job, and what it knew of it may be lost.
void JobDesk::doubt(JobRecord record)
{
    if (m_ledger.find(record.key()))
        return;
    ++record.step;
    record.state = State::Doubtful;
    record.text = QStringLiteral("its bridge has lost its ledger");
    publishRecord(record);
}

/// The own job after a record of it, of this bridge or another.
void JobDesk::follow(const JobRecord &record, bool counts, Job &job)
{
    const QString key = record.key();
    Placement *placement = job.placement.get();
    const State state = job.record.state;
    if (m_claims.find(key)->bridge != m_bridge) {
        // It found the job placing: it had not heard "starting" from the broker, and so this
        // bridge has not heard that either and has not asked the printer.
        if (state == State::Placing
            || (state == State::Starting && !(placement && placement->isAsking())))
            giveUp(key);
    } else if (counts && state == State::Starting && record.step == job.record.step && placement
               && placement->isIdle()) {
        job.asked = presentMoment();
        if (writeDown(job))
            placement->start(job.record.file, job.record.before);
    }
}

void JobDesk::onThere(const QString &key, const QString &storedName)
{
    Job &job = m_jobs.at(key);
    job.record.state = State::Starting;
    job.record.file = storedName;
    job.record.before = job.placement->station().printer().status().filename;
    record(job); // answered by takeRecord()
}

void JobDesk::onNotStarted(const QString &key, const Failure &failure, bool isJobSuspect)
{
    Job &job = m_jobs.at(key);
    job.suspicions += isJobSuspect ? 1 : 0;
    if (job.suspicions >= suspicionLimit) {
        settle(key, State::Refused, failure);
        return;
    }
    m_restingUntil[job.record.printer] = QDateTime::currentMSecsSinceEpoch() + restAfterFailure;
    putBack(job, failure);
}

/// The printer is not to blame: others may have it meanwhile.
void JobDesk::onNotFetched(const QString &key, const Failure &failure)
{
    Job &job = m_jobs.at(key);
    if (!job.missing.isValid())
        job.missing.start();
    if (job.missing.hasExpired(longestFetching)) {
        settle(key, State::Refused, failure);
        return;
    }
    job.rest.setRemainingTime(firstRestAfterFetching << std::min(job.vainFetches++, mostDoublings));
    putBack(job, failure);
}

void JobDesk::putBack(Job &job, const Failure &failure)
{
    Q_EMIT said(QStringLiteral("job %1 was not started on %2: %3")
                    .arg(job.record.key(), job.record.printer, failure.text));
    end(job);
    job.record.state = State::Placing;
    record(job);
    consider();
}

void JobDesk::settle(const QString &key, State state, const Failure &failure)
{
    Job &job = m_jobs.at(key);
    job.record.state = state;
    job.record.error = failure.word;
    job.record.text = failure.text;
    if (!record(job))
        return;
    release(job);
    const auto station = m_stations.find(job.record.printer);
    if (station != m_stations.end())
        station->second->topics().setJob(job.record.isOver() ? QString() : job.record.id);
    Q_EMIT said(QStringLiteral("job %1: %2 on %3 %4")
                    .arg(key, job.record.toJson().value(QLatin1String("state")).toString(),
                         job.record.printer, job.record.text));
    if (!job.record.isOver())
        return;
    ++m_done;
    end(job);
    m_jobs.erase(key);
    consider();
}

/// Another bridge has claimed the job before.
void JobDesk::giveUp(const QString &key)
{
    Job &job = m_jobs.at(key);
    end(job);
    m_ledger.remove(key);
    job.isOwn = false;
    job.record.bridge.clear();
    consider();
}

/// Answers and acknowledges the requests for a settled job.
void JobDesk::release(Job &job)
{
    const QVector<Job::Copy> copies = std::exchange(job.copies, {});
    for (const Job::Copy &copy : copies) {
        respond(m_broker, copy.message, answerOf(job.record));
        copy.acknowledge();
    }
    const QVector<Job::Copy> leaving = std::exchange(job.leaving, {});
    for (const Job::Copy &copy : leaving)
        copy.acknowledge();
}

/// To the disk first, then to the broker.
bool JobDesk::record(Job &job)
{
    ++job.record.step;
    if (!writeDown(job))
        return false;
    publishRecord(job.record);
    return true;
}

bool JobDesk::writeDown(const Job &job)
{
    const QString fault = m_ledger.write({job.record, job.request, job.asked});
    if (!fault.isEmpty())
        Q_EMIT failed(fault);
    return fault.isEmpty();
}

void JobDesk::publishRecord(const JobRecord &record)
{
    QJsonObject object = record.toJson();
    object.insert(QStringLiteral("time"), now());
    Message message;
    message.topic = topics::ofJob(record.group, record.id);
    message.payload = toJson(object);
    message.isRetained = true;
    message.expiry = record.isOver() ? recordExpiry : 0;
    const int number = m_broker.publish(message);
    if (record.isOver() && number > 0)
        m_lastRecords.insert(number, record.key());
}

/// Jobs that wait here while printers of other bridges are free go back to the group.
void JobDesk::handOver()
{
    for (const QString &group : m_groups.keys()) {
        int wanted = freePrinters(group) > 0 ? 0 : m_peers.freeElsewhere(group);
        for (const QString &key : keysByArrival()) {
            Job &job = m_jobs.at(key);
            if (wanted <= 0)
                break;
            if (!m_isActive || job.isOwn || job.record.group != group || job.copies.isEmpty()
                || job.handOver != 0 || job.isTied || !mayClaim(job))
                continue;
            job.handOver = m_broker.publish(job.copies.first().message);
            if (job.handOver != 0)
                job.leaving = std::exchange(job.copies, {});
            --wanted;
        }
    }
}

void JobDesk::onPublished(int number, int reason)
{
    const QString key = m_lastRecords.take(number);
    if (!key.isEmpty() && reason < MQTT_RC_UNSPECIFIED)
        m_ledger.markPublished(key);
    const auto job = std::find_if(m_jobs.begin(), m_jobs.end(),
                                  [&](const auto &each) { return each.second.handOver == number; });
    if (job == m_jobs.end())
        return;
    job->second.handOver = 0;
    const QVector<Job::Copy> gone = std::exchange(job->second.leaving, {});
    if (reason == 0) {
        for (const Job::Copy &copy : gone)
            copy.acknowledge();
    } else {
        job->second.copies += gone;
        job->second.isTied = true;
        Q_EMIT said(QStringLiteral("job %1 cannot be given to another bridge: the broker's answer "
                                   "is 0x%2")
                        .arg(job->first)
                        .arg(reason, 0, 16));
    }
    m_soon.start();
}

int JobDesk::freePrinters(const QString &group) const
{
    const QStringList members = m_groups.value(group);
    return int(std::count_if(members.begin(), members.end(),
                             [this](const QString &each) { return isFree(each); }));
}

int JobDesk::waitingJobs(const QString &group) const
{
    return int(std::count_if(m_jobs.begin(), m_jobs.end(), [&](const auto &each) {
        return each.second.record.group == group && !each.second.placement;
    }));
}

} // namespace zybridge
