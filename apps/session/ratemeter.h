// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The rate of a transfer over its last seconds, and what time that leaves.

#ifndef RATEMETER_H
#define RATEMETER_H

#include <QVector>
#include <QtGlobal>

namespace zysession
{

/// Follows the network without jumping at every acknowledged chunk. What a resumed transfer finds
/// on the printer was not sent now, so the first sample only marks the start.
class RateMeter
{
public:
    /// A transfer begins (again) at @p bytes. @p now in milliseconds, of any clock.
    void start(qint64 now, qint64 bytes);
    /// The printer holds @p bytes; @p now never decreases.
    void add(qint64 now, qint64 bytes);

    double bytesPerSecond() const; ///< 0 while unknown
    /// -1 while unknown.
    qint64 secondsLeft(qint64 total) const;

private:
    struct Sample {
        qint64 time;
        qint64 bytes;
    };
    QVector<Sample> m_samples;
};

} // namespace zysession

#endif // RATEMETER_H
