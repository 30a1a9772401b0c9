// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Judges a request by the server's options, before its handler or the host sees it.

#ifndef REQUESTGUARD_H
#define REQUESTGUARD_H

#include "zyserveroptions.h"

#include <QJsonObject>

#include <optional>

namespace zyws
{

struct RequestFault {
    bool isToken; ///< the token is missing or wrong; otherwise the rest of the request is at fault
    QString why; ///< for people
};

/// What is wrong with @p request; nothing for what passes. @p directory is the receive directory.
std::optional<RequestFault> requestFault(const QJsonObject &request, const ZyServerOptions &options,
                                         const QString &directory);

/// True when the options let a file be received or printed under @p name.
bool isNameAccepted(const QString &name, const ZyServerOptions &options, const QString &directory);

} // namespace zyws

#endif // REQUESTGUARD_H
