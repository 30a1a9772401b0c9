// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the bridge's process uses.

#ifndef METRICS_H
#define METRICS_H

#include <QJsonObject>

namespace zybridge
{

/// "cpu" in seconds since the start, "memory" in bytes (resident).
QJsonObject processMetrics();

} // namespace zybridge

#endif // METRICS_H
