// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The message envelope: one JSON object per text message, sizes and offsets as decimal strings.

#ifndef ENVELOPE_H
#define ENVELOPE_H

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

namespace zyws
{

/// The object in a text message; an empty object for anything that is not one JSON object.
QJsonObject parseMessage(const QString &message);

/// False when @p message, taken for JSON, has an object or array inside another: no request has,
/// and Qt 5.15's parser leaks some of those.
bool isFlat(const QString &message);

/// The compact text of a message: no white space between tokens, keys in the object's own order.
QString messageText(const QJsonObject &message);

/// A size or an offset as it travels: a string of decimal digits.
QString decimal(qint64 value);

/// A size or an offset read back; 0 when the value is not a JSON string of decimal digits.
qint64 decimalValue(const QJsonValue &value);

} // namespace zyws

#endif // ENVELOPE_H
