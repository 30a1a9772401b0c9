// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the bridge's process uses.

#include "metrics.h"

#include <QFile>

#include <ctime>
#include <unistd.h>

namespace zybridge
{

QJsonObject processMetrics()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    file.open(QIODevice::ReadOnly);
    const qint64 pages = file.readAll().split(' ').value(1).toLongLong();
    return {{QStringLiteral("cpu"), double(std::clock()) / CLOCKS_PER_SEC},
            {QStringLiteral("memory"), pages * sysconf(_SC_PAGESIZE)}};
}

} // namespace zybridge
