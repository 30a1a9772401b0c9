// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Tells the host what the server itself has turned down or lost.

#ifndef REPORT_H
#define REPORT_H

#include "zyserveroptions.h"

namespace zyws
{

inline void report(const ZyServerOptions &options, ZyServerOptions::Failure what,
                   const QString &why)
{
    if (const auto handler = options.failureHandler())
        handler(what, why);
}

inline void report(const ZyServerOptions &options, ZyServerOptions::Transfer what,
                   const QString &name, const QString &peer)
{
    if (const auto handler = options.transferHandler())
        handler(what, name, peer);
}

} // namespace zyws

#endif // REPORT_H
