// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How fast a transfer goes and how long it will take.

#ifndef PANEL_TRANSFERESTIMATE_H
#define PANEL_TRANSFERESTIMATE_H

#include <QQueue>
#include <QtGlobal>

namespace zypanel
{

/**
 * A rate over the last few seconds, so that it follows the network and does not jump with every
 * acknowledged chunk.
 *
 * The first sample only marks the start: what a resumed transfer finds on the printer was not sent
 * now and must not count as speed.
 */
class TransferEstimate
{
public:
    void start(qint64 bytes, qint64 total, qint64 now);
    void add(qint64 bytes, qint64 now);

    /// Bytes a second; 0 while unknown.
    double rate() const;
    /// Seconds; -1 while unknown.
    qint64 secondsLeft() const;

private:
    struct Sample {
        qint64 bytes;
        qint64 time; ///< in ms
    };

    QQueue<Sample> m_samples;
    qint64 m_total = 0;
};

} // namespace zypanel

#endif // PANEL_TRANSFERESTIMATE_H
