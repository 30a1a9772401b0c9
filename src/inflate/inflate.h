// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Inflates a chunk in Qt's compressed form.

#ifndef INFLATE_H
#define INFLATE_H

#include <QByteArray>

#include <optional>

namespace zyws
{

/**
 * What qUncompress() makes of @p payload: the same bytes, and Qt's own warning when there are none.
 *
 * Only a few malformed streams that zlib refuses inflate with libdeflate, when their checksum is
 * right.
 */
QByteArray inflated(const QByteArray &payload);

/// The same without a warning; nothing when @p payload does not inflate, or to more than @p limit
/// bytes, whatever size it announces.
std::optional<QByteArray> inflatedWithin(const QByteArray &payload, int limit);

} // namespace zyws

#endif // INFLATE_H
