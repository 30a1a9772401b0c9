// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge's own jobs on disk, so that a restarted bridge goes on with them.

#ifndef JOBLEDGER_H
#define JOBLEDGER_H

#include "jobrecord.h"

#include <QSqlDatabase>
#include <QVector>

namespace zybridge
{

class JobLedger
{
public:
    struct Entry {
        JobRecord record;
        QByteArray request; ///< the payload that asked for the job
        QByteArray asked; ///< when the printer was about to be asked to print it; empty: never
    };

    JobLedger() = default;
    ~JobLedger();

    /// Empty, or why @p file cannot be used. Entries that have been over for a month are removed.
    QString open(const QString &file);

    /// It is on disk when this returns. Empty, or why it could not be written.
    QString write(const Entry &entry);
    /// The broker has the job's last record.
    void markPublished(const QString &key);
    /// The job is another bridge's now.
    void remove(const QString &key);
    std::optional<Entry> find(const QString &key) const;
    QVector<Entry> unfinished() const;
    /// Jobs that are over, of which the broker may not know: one that was killed forgets what it
    /// has taken since it last saved its state, so the last hour's are among them.
    QVector<Entry> unpublished() const;

private:
    Q_DISABLE_COPY(JobLedger)

    QVector<Entry> select(const QString &condition, const QVariant &value) const;

    QSqlDatabase m_database;
};

} // namespace zybridge

#endif // JOBLEDGER_H
