// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Compresses a chunk into Qt's form, at a level of zlib's or at a rung of our own ladder.

#include "compressor.h"

#ifdef ZYWS_WITH_LIBDEFLATE
#include <QtEndian>

#include <libdeflate.h>

#include <memory>
#endif

#include <new>

namespace zyws
{

namespace
{

/// Of zlib and libdeflate alike. libdeflate's levels from 10 on pack a sliced model tighter by 3 %,
/// but need 9 MiB of memory in each thread.
constexpr int rungLevels[rungCount] = {0, 1, 6, 9};

QByteArray compressedByQt(const QByteArray &bytes, int level)
{
    QByteArray payload = qCompress(bytes, level);
    if (payload.isEmpty()) // Qt 6 says so when memory runs out, where Qt 5 throws
        throw std::bad_alloc();
    return payload;
}

#ifdef ZYWS_WITH_LIBDEFLATE
constexpr int prefixSize = 4;

struct FreeCompressor {
    void operator()(libdeflate_compressor *compressor) const
    {
        libdeflate_free_compressor(compressor);
    }
};

/// Not kept for the next chunk: it would keep its memory in every thread that ever compressed.
QByteArray quicklyCompressed(const QByteArray &bytes, int level)
{
    const std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(
        libdeflate_alloc_compressor(level));
    if (!compressor)
        throw std::bad_alloc();
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::size_t limit = libdeflate_zlib_compress_bound(compressor.get(), size);
    QByteArray payload(prefixSize + static_cast<int>(limit), Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(size), payload.data());
    const std::size_t count = libdeflate_zlib_compress(compressor.get(), bytes.constData(), size,
                                                       payload.data() + prefixSize, limit);
    payload.truncate(prefixSize + static_cast<int>(count));
    return payload;
}
#else
QByteArray quicklyCompressed(const QByteArray &bytes, int level)
{
    return compressedByQt(bytes, level);
}
#endif

} // namespace

QByteArray compressed(const QByteArray &bytes, Effort effort)
{
    if (effort.kind == Effort::ZlibLevel)
        return compressedByQt(bytes, effort.number);
    return quicklyCompressed(bytes, rungLevels[effort.number]);
}

} // namespace zyws
