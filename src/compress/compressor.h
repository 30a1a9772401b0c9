// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Compresses a chunk into Qt's form, at a level of zlib's or at a rung of our own ladder.

#ifndef COMPRESSOR_H
#define COMPRESSOR_H

#include <QByteArray>

namespace zyws
{

/// How hard a chunk is compressed.
struct Effort {
    enum Kind {
        ZlibLevel, ///< 0 (none) to 9 (smallest); any other number is zlib's own choice
        Rung, ///< 0 (stored as it is) to rungCount - 1 (smallest)
    };

    Kind kind;
    int number;
};

/// Few, each clearly slower than the one below: the controller tries them one by one.
inline constexpr int rungCount = 4;

/**
 * @p bytes in the form of qCompress(), which every receiver inflates.
 *
 * At a level these are qCompress()'s very bytes. At a rung they come from libdeflate where there is
 * one, and are never longer than stored blocks of the same bytes.
 */
QByteArray compressed(const QByteArray &bytes, Effort effort);

} // namespace zyws

#endif // COMPRESSOR_H
