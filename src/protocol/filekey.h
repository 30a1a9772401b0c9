// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file key, by which both ends know a transfer again after a dropped connection.

#ifndef FILEKEY_H
#define FILEKEY_H

#include <QByteArray>
#include <QString>

namespace zyws
{

/// How many of a file's last bytes fileKey() wants.
inline constexpr qint64 fileKeyTail = 8;

/**
 * The key of a file, from its last bytes.
 *
 * @param tail the last eight bytes of the file, or the whole file when it is shorter. Bytes 4 to 7
 *        (missing ones count as 0) make a little-endian signed 32-bit number, which is widened to
 *        64 bits and written in lower-case hexadecimal without leading zeros.
 */
QString fileKey(const QByteArray &tail);

} // namespace zyws

#endif // FILEKEY_H
