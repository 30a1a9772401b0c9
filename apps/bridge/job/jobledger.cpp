// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge's own jobs on disk, so that a restarted bridge goes on with them.

#include "jobledger.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

namespace zybridge
{

namespace
{

constexpr qint64 daysKept = 30;
constexpr qint64 brokersMemory = 3600; // s; Mosquitto saves every half hour unless told otherwise

const QLatin1String connectionName("zybridge");

JobLedger::Entry entryOf(const QSqlQuery &row)
{
    const QString group = row.value(0).toString().section(QLatin1Char('/'), 0, 0);
    const QJsonObject object = QJsonDocument::fromJson(row.value(1).toByteArray()).object();
    const auto record = JobRecord::fromJson(group, object);
    return {record.value_or(JobRecord()), row.value(2).toByteArray(), row.value(3).toByteArray()};
}

} // namespace

JobLedger::~JobLedger()
{
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
}

QString JobLedger::open(const QString &file)
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    m_database.setDatabaseName(file);
    if (!m_database.open())
        return m_database.lastError().text();
    for (const char *statement :
         {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL",
          "CREATE TABLE IF NOT EXISTS jobs (key TEXT PRIMARY KEY, "
          "record TEXT NOT NULL, request BLOB NOT NULL, asked BLOB, "
          "isOver INTEGER NOT NULL, "
          "isPublished INTEGER NOT NULL, changed INTEGER NOT NULL)",
          "CREATE INDEX IF NOT EXISTS unfinished ON jobs (isOver, isPublished)"}) {
        QSqlQuery query(m_database);
        if (!query.exec(QLatin1String(statement)))
            return query.lastError().text();
    }
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("DELETE FROM jobs WHERE isOver = 1 AND changed < ?"));
    query.addBindValue(QDateTime::currentDateTime().addDays(-daysKept).toMSecsSinceEpoch());
    return query.exec() ? QString() : query.lastError().text();
}

QString JobLedger::write(const Entry &entry)
{
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO jobs VALUES (?, ?, ?, ?, ?, 0, ?)"));
    query.addBindValue(entry.record.key());
    query.addBindValue(QJsonDocument(entry.record.toJson()).toJson(QJsonDocument::Compact));
    query.addBindValue(entry.request);
    query.addBindValue(entry.asked);
    query.addBindValue(entry.record.isOver() ? 1 : 0);
    query.addBindValue(QDateTime::currentMSecsSinceEpoch());
    return query.exec() ? QString() : query.lastError().text();
}

void JobLedger::markPublished(const QString &key)
{
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("UPDATE jobs SET isPublished = 1 WHERE key = ?"));
    query.addBindValue(key);
    query.exec();
}

void JobLedger::remove(const QString &key)
{
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("DELETE FROM jobs WHERE key = ?"));
    query.addBindValue(key);
    query.exec();
}

std::optional<JobLedger::Entry> JobLedger::find(const QString &key) const
{
    const QVector<Entry> found = select(QStringLiteral("key = ?"), key);
    return found.isEmpty() ? std::nullopt : std::optional<Entry>(found.first());
}

QVector<JobLedger::Entry> JobLedger::unfinished() const
{
    return select(QStringLiteral("isOver = ?"), 0);
}

QVector<JobLedger::Entry> JobLedger::unpublished() const
{
    const qint64 since = QDateTime::currentDateTime().addSecs(-brokersMemory).toMSecsSinceEpoch();
    return select(QStringLiteral("isOver = 1 AND (isPublished = 0 OR changed > ?)"), since);
}

QVector<JobLedger::Entry> JobLedger::select(const QString &condition, const QVariant &value) const
{
    QVector<Entry> entries;
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("SELECT key, record, request, asked FROM jobs WHERE ")
                  + condition);
    query.addBindValue(value);
    query.exec();
    while (query.next())
        entries.append(entryOf(query));
    return entries;
}

} // namespace zybridge
