// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a transfer costs its sender, from the call that starts it to the printer's confirmation.

#ifndef TRANSFERCLOCK_H
#define TRANSFERCLOCK_H

#include "processusage.h"

#include <QElapsedTimer>

namespace zybench
{

class TransferClock
{
public:
    void start()
    {
        m_cpuBefore = cpuSeconds();
        m_wall.start();
    }

    /// Prints {"wall": seconds, "cpu": seconds, "maxrss_kib": ...}.
    void report() const
    {
        const double wall = static_cast<double>(m_wall.nsecsElapsed()) / 1e9;
        printLine({{QStringLiteral("wall"), wall},
                   {QStringLiteral("cpu"), cpuSeconds() - m_cpuBefore},
                   {QStringLiteral("maxrss_kib"), peakResidentKib()}});
    }

private:
    double m_cpuBefore = 0;
    QElapsedTimer m_wall;
};

} // namespace zybench

#endif // TRANSFERCLOCK_H
