// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a zlib stream is one that every inflater reads alike.

#ifndef ZLIBSTREAM_H
#define ZLIBSTREAM_H

#include <QtGlobal>

namespace zyws
{

/**
 * True when the @p size bytes at @p stream are one zlib stream (RFC 1950) whose blocks keep to the
 * letter of RFC 1951, with nothing behind it.
 *
 * Inflaters differ in what they make of a stream that does not: an incomplete Huffman code, a
 * symbol that has no meaning. Those that do they read alike, distances and checksum aside, which
 * are not looked at here. May be false for an odd stream that zlib takes (a window of less than
 * 32 KiB, a block without matches from an unusual compressor, very many tiny blocks), is never true
 * for one that zlib refuses for its structure.
 */
bool isPlainZlibStream(const uchar *stream, qint64 size);

} // namespace zyws

#endif // ZLIBSTREAM_H
