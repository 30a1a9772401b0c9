// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How the transfer of each file to each printer stands: amounts, rate and time, for bars and the
// summary.

#include "transferlog.h"

#include <algorithm>

namespace zyslicer
{

TransferLog::TransferLog(int printers) : m_entries(printers)
{
    m_clock.start();
}

void TransferLog::note(int printer, const Event &event)
{
    Entry &entry = m_entries[printer][event.file];
    const qint64 now = m_clock.elapsed();
    switch (event.kind) {
    case Event::Kind::Offered:
        if (entry.sent == 0)
            entry.startTime = now;
        entry.attemptTime = now;
        entry.received = 0;
        entry.rate.start(now, 0);
        break;
    case Event::Kind::Resumed: // the bytes before are not ours
        entry.received = event.received;
        entry.rate.start(entry.attemptTime, event.received);
        break;
    case Event::Kind::Progress:
        entry.sent += event.received - entry.received;
        entry.received = event.received;
        entry.total = event.total;
        entry.endTime = now;
        entry.rate.add(now, event.received);
        break;
    default:
        break;
    }
}

bool TransferLog::hasSent() const
{
    return std::any_of(m_entries.begin(), m_entries.end(), [](const QHash<QString, Entry> &files) {
        return std::any_of(files.begin(), files.end(),
                           [](const Entry &entry) { return entry.sent > 0; });
    });
}

qint64 duration(const TransferLog::Entry &entry)
{
    constexpr qint64 half = 500; // ms, to round
    return (entry.endTime - entry.startTime + half) / 1000;
}

double meanRate(const TransferLog::Entry &entry)
{
    const qint64 time = entry.endTime - entry.startTime;
    if (time <= 0 || entry.sent <= 0)
        return 0;
    return static_cast<double>(entry.sent) * 1000.0 / static_cast<double>(time);
}

} // namespace zyslicer
