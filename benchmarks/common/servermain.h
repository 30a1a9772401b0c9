// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What both servers' programs have in common: options, the ready line, the end.

#ifndef SERVERMAIN_H
#define SERVERMAIN_H

#include <QString>

#include <functional>

class QCoreApplication;

namespace zybench
{

struct ServerOptions {
    QString directory; ///< absolute; where files are received
    quint16 port = 0;
    QString protection; ///< "none", "unsynced" or "synced"; the library's server alone knows it
};

/// Reads "--dir DIR --port PORT --protection LEVEL"; leaves the process when they are wrong.
ServerOptions serverOptions(const QCoreApplication &app);

/**
 * Says on which port the server listens, runs until SIGTERM, then prints
 * {"cpu": seconds since now, "maxrss_kib": ...}.
 */
int serve(QCoreApplication &app, quint16 port);

} // namespace zybench

#endif // SERVERMAIN_H
