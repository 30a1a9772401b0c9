// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Makes a damaged payload consistent again, so that the damage is all that is wrong with it.

#include "payloadrepair.h"

#include <QtEndian>

#include <libdeflate.h>

#include <array>
#include <memory>

namespace fuzzing
{

namespace
{

constexpr std::size_t prefixSize = 4;
constexpr std::size_t headerSize = 2;
constexpr std::size_t checksumSize = 4;
constexpr std::size_t frameSize = prefixSize + headerSize + checksumSize;
constexpr std::size_t outputLimit = std::size_t(1) << 20;

} // namespace

std::size_t repairPayload(std::uint8_t *data, std::size_t size)
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
    qToBigEndian(libdeflate_adler32(1, output.data(), made), data + prefixSize + headerSize + used);
    return frameSize + used;
}

} // namespace fuzzing
