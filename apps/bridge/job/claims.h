// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whose job is whose, as the broker has ordered what the bridges say.

#ifndef CLAIMS_H
#define CLAIMS_H

#include "jobrecord.h"

#include <QHash>

namespace zybridge
{

/**
 * The broker delivers the messages of one topic to all bridges in the same order, their own
 * included. So all come to the same answer by one rule: the first record counts; after it only
 * those of the same bridge in the same epoch that are no older, or of a higher epoch.
 *
 * The broker retains the last record, for those who come later, and that may be one that does not
 * count. So it is followed by the one that does: from its bridge, from the bridge whose record does
 * not count, and from all for an older record of the same claim. A bridge whose claim is met by
 * another of the same epoch repeats it with a higher one: the other may have come when the broker
 * had forgotten the first, and would hold to its own.
 */
class Claims
{
public:
    /// False for a record that does not count.
    bool take(const JobRecord &record);
    /// The broker has deleted the retained message.
    void forget(const QString &key) { m_records.remove(key); }

    std::optional<JobRecord> find(const QString &key) const;

private:
    QHash<QString, JobRecord> m_records;
};

} // namespace zybridge

#endif // CLAIMS_H
