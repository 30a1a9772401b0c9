// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whose job is whose, as the broker has ordered what the bridges say.

#include "claims.h"

namespace zybridge
{

bool Claims::take(const JobRecord &record)
{
    const auto known = m_records.constFind(record.key());
    const bool counts = known == m_records.constEnd() || record.epoch > known->epoch
        || (record.epoch == known->epoch && record.bridge == known->bridge
            && record.step >= known->step);
    if (counts)
        m_records.insert(record.key(), record);
    return counts;
}

std::optional<JobRecord> Claims::find(const QString &key) const
{
    const auto known = m_records.constFind(key);
    return known == m_records.constEnd() ? std::nullopt : std::optional<JobRecord>(*known);
}

} // namespace zybridge
