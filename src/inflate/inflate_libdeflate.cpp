// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Inflates a chunk with libdeflate where that is sure to give what zlib gives, the rest with Qt.

#include "inflate.h"
#include "zlibstream.h"

#include <QtEndian>

#include <libdeflate.h>

#include <memory>

namespace zyws
{

namespace
{

constexpr int prefixSize = 4;
/// What a chunk holds. A larger announcement may be a lie that costs memory: Qt grows its buffer.
constexpr quint32 largestSize = 1024 * 1024;

struct FreeDecompressor {
    void operator()(libdeflate_decompressor *decompressor) const
    {
        libdeflate_free_decompressor(decompressor);
    }
};

/// The bytes of a payload that zlib is sure to read the same way; nothing of any other.
QByteArray inflatedQuickly(const QByteArray &payload)
{
    if (payload.size() <= prefixSize)
        return {};
    const auto size = qFromBigEndian<quint32>(payload.constData());
    if (size == 0 || size > largestSize)
        return {};
    const char *stream = payload.constData() + prefixSize;
    const auto streamSize = static_cast<std::size_t>(payload.size() - prefixSize);
    // libdeflate finds a meaning in some malformed streams that zlib refuses.
    if (!isPlainZlibStream(reinterpret_cast<const uchar *>(stream), payload.size() - prefixSize))
        return {};
    // Made for each chunk, since that takes 0.1 us.
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    if (!decompressor)
        return {};
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    // Without a place for the output's size, any other size than the announced one is a failure.
    const libdeflate_result result = libdeflate_zlib_decompress(
        decompressor.get(), stream, streamSize, bytes.data(), size, nullptr);
    return result == LIBDEFLATE_SUCCESS ? bytes : QByteArray();
}

} // namespace

QByteArray inflated(const QByteArray &payload)
{
    const QByteArray bytes = inflatedQuickly(payload);
    return bytes.isEmpty() ? qUncompress(payload) : bytes;
}

} // namespace zyws
