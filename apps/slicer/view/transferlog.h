// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How the transfer of each file to each printer stands: amounts, rate and time, for bars and the
// summary.

#ifndef TRANSFERLOG_H
#define TRANSFERLOG_H

#include "event.h"
#include "ratemeter.h"

#include <QElapsedTimer>
#include <QHash>
#include <QVector>

namespace zyslicer
{

class TransferLog
{
public:
    struct Entry {
        zysession::RateMeter rate;
        qint64 startTime = 0; ///< ms, when it was first offered
        qint64 attemptTime = 0; ///< ms, when the current attempt was offered
        qint64 endTime = 0; ///< ms, of the last byte so far
        qint64 sent = 0; ///< bytes sent by this program, what was resumed excluded
        qint64 received = 0; ///< bytes of the file on the printer
        qint64 total = 0;
    };

    explicit TransferLog(int printers);

    void note(int printer, const Event &event);
    Entry entry(int printer, const QString &file) const { return m_entries[printer][file]; }
    /// Whether any printer was sent anything.
    bool hasSent() const;

private:
    QElapsedTimer m_clock;
    QVector<QHash<QString, Entry>> m_entries; ///< of each printer, by file
};

/// From the first offer to the last byte, in seconds.
qint64 duration(const TransferLog::Entry &entry);
/// The mean rate over the whole transfer; 0 while unknown.
double meanRate(const TransferLog::Entry &entry);

} // namespace zyslicer

#endif // TRANSFERLOG_H
