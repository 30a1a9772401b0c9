// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Compressed chunks: unpackChunk() against qUncompress(), bytes and warnings.

#include "datachunk.h"
#include "fuzztarget.h"

#include <QtEndian>

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>

namespace
{

constexpr std::size_t prefixSize = 4;
constexpr std::size_t headerSize = 2;
constexpr std::size_t checksumSize = 4;
constexpr std::size_t frameSize = prefixSize + headerSize + checksumSize;
constexpr std::size_t outputLimit = std::size_t(1) << 20;

/// Gives a payload the prefix and the checksum of what libdeflate, the less strict inflater, reads
/// in it: without them a change to the deflate data never gets beyond the checksum.
std::size_t repair(std::uint8_t *data, std::size_t size)
{
    static const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)>
        decompressor(libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    static std::array<std::uint8_t, outputLimit> output;
    if (size < frameSize)
        return size;
    std::size_t used = 0;
    std::size_t made = 0;
    const std::uint8_t *deflated = data + prefixSize + headerSize;
    if (libdeflate_deflate_decompress_ex(decompressor.get(), deflated, size - frameSize,
                                         output.data(), output.size(), &used, &made)
        != LIBDEFLATE_SUCCESS)
        return size;
    qToBigEndian(quint32(made), data);
    const auto checksum = quint32(::adler32(1, output.data(), uInt(made)));
    qToBigEndian(checksum, data + prefixSize + headerSize + used);
    return frameSize + used;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
    return seed % 4 == 0 ? mutated : repair(data, mutated);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray payload = fuzzing::bytesOf(data, size);
    if (!fuzzing::isBearable(payload))
        return 0;
    fuzzing::takeWarnings();
    const QByteArray expected = qUncompress(payload);
    const QStringList expectedWarnings = fuzzing::takeWarnings();
    const QByteArray actual = zyws::unpackChunk(payload, true);
    fuzzing::require(actual == expected, "other bytes than qUncompress()");
    fuzzing::require(actual.isNull() == expected.isNull(), "another emptiness than qUncompress()");
    fuzzing::require(fuzzing::takeWarnings() == expectedWarnings,
                     "other warnings than qUncompress()");
    return 0;
}
