// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which keys a request may have, and of which type their values have to be.

#ifndef REQUESTKEYS_H
#define REQUESTKEYS_H

#include <QJsonObject>
#include <QMap>

namespace zybridge
{

using RequestKeys = QMap<QString, QJsonValue::Type>;

/// The fault of @p object in one sentence that names the key: one that is not among @p keys, or a
/// value of another type; a text has to have a character. Empty when there is none. No key has to
/// be there.
QString keyFault(const QJsonObject &object, const RequestKeys &keys);

} // namespace zybridge

#endif // REQUESTKEYS_H
