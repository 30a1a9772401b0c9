// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The payload of a data message: one chunk of a file, compressed by itself or as it is.

#ifndef DATACHUNK_H
#define DATACHUNK_H

#include <QByteArray>

namespace zyws
{

/// File bytes in one data message; only the last chunk of a file is shorter.
inline constexpr int chunkSize = 1024 * 1024;

/// zlib's own choice, 6; what deployed slicers send.
inline constexpr int usualCompressionLevel = -1;

/**
 * The payload that carries @p size bytes at @p bytes.
 *
 * Uncompressed, the payload refers to @p bytes without copying, so it must not outlive them.
 * Whoever receives it need not know the level, 0 (none) to 9 (smallest), which any other number
 * leaves at zlib's choice.
 */
QByteArray packChunk(const char *bytes, int size, bool compress,
                     int compressionLevel = usualCompressionLevel);

/// The file bytes in a payload; empty when a compressed payload does not inflate.
QByteArray unpackChunk(const QByteArray &payload, bool compress);

/**
 * @p offset after @p count more bytes. Wraps around at the ends of the range, since an offset from
 * a damaged record or a hostile reply may be any number.
 */
qint64 advanced(qint64 offset, qint64 count);

} // namespace zyws

#endif // DATACHUNK_H
