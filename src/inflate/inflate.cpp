// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Inflates a chunk with libdeflate, and with Qt what libdeflate refuses or is not there for.

#include "inflate.h"

#ifdef ZYWS_WITH_LIBDEFLATE
#include <QtEndian>

#include <libdeflate.h>

#include <memory>
#endif

#include <zlib.h>

namespace zyws
{

namespace
{

constexpr int prefixSize = 4;

} // namespace

#ifdef ZYWS_WITH_LIBDEFLATE
namespace
{

/// What a chunk holds. The prefix is the peer's: no more memory is reserved on its word alone.
constexpr quint32 largestSize = 1024 * 1024;

struct FreeDecompressor {
    void operator()(libdeflate_decompressor *decompressor) const
    {
        libdeflate_free_decompressor(decompressor);
    }
};

/// Empty for all but a sound stream of exactly the announced size, at most a chunk's.
QByteArray inflatedQuickly(const QByteArray &payload)
{
    static thread_local const std::unique_ptr<libdeflate_decompressor, FreeDecompressor>
        decompressor(libdeflate_alloc_decompressor());
    // Kept for the next chunk: fresh memory for each would cost a tenth of the printer's processor
    // time in page faults.
    static thread_local QByteArray bytes;
    if (payload.size() <= prefixSize || !decompressor)
        return {};
    const auto size = qFromBigEndian<quint32>(payload.constData());
    if (size == 0 || size > largestSize)
        return {};
    bytes.reserve(largestSize);
    bytes.resize(static_cast<int>(size));
    // Without a place for the output's size, any other size than the announced one is a failure.
    const libdeflate_result result = libdeflate_zlib_decompress(
        decompressor.get(), payload.constData() + prefixSize,
        static_cast<std::size_t>(payload.size() - prefixSize), bytes.data(), size, nullptr);
    return result == LIBDEFLATE_SUCCESS ? bytes : QByteArray();
}

} // namespace
#endif

QByteArray inflated(const QByteArray &payload)
{
#ifdef ZYWS_WITH_LIBDEFLATE
    QByteArray bytes = inflatedQuickly(payload);
    if (!bytes.isEmpty())
        return bytes;
#endif
    return qUncompress(payload);
}

std::optional<QByteArray> inflatedWithin(const QByteArray &payload, int limit)
{
    if (payload.size() <= prefixSize)
        return std::nullopt;
#ifdef ZYWS_WITH_LIBDEFLATE
    QByteArray quick = inflatedQuickly(payload);
    if (!quick.isEmpty() && quick.size() <= limit)
        return quick;
#endif
    QByteArray bytes(limit, Qt::Uninitialized);
    auto size = static_cast<uLongf>(limit);
    const int result = uncompress(reinterpret_cast<Bytef *>(bytes.data()), &size,
                                  reinterpret_cast<const Bytef *>(payload.constData()) + prefixSize,
                                  static_cast<uLong>(payload.size() - prefixSize));
    if (result != Z_OK)
        return std::nullopt;
    bytes.truncate(static_cast<int>(size));
    return bytes;
}

} // namespace zyws
