// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Walks from symbol to symbol of a zlib stream (RFC 1950, RFC 1951) without producing its output.

#include "zlibstream.h"

#include "bitreader.h"
#include "blocksteps.h"

#include <algorithm>

namespace zyws
{

namespace
{

constexpr int headerSize = 2;
constexpr int checksumSize = 4;

bool walkSymbols(BitReader &reader, const BlockSteps &steps)
{
    // A copy stays in registers.
    BitReader local = reader;
    local.refill();
    unsigned table = literalTable;
    Step step = steps.step(table, local.bits());
    for (;;) {
        if (local.isOverrun())
            return false;
        local.refill();
        if (Q_UNLIKELY(step.needsCare())) {
            step = steps.carefulStep(table, local.bits());
            if (step.isMeaningless())
                return false;
            local.skip(step.bits());
            if (step.isEndOfBlock())
                break;
            table = step.nextTable();
            step = steps.step(table, local.bits());
            continue;
        }
        // Two steps leave enough bits to look up the third, so no look-up waits for a refill.
        static_assert(2 * longestStep + stepTableBits <= BitReader::refilled);
        for (int i = 0; i < 2 && Q_LIKELY(!step.needsCare()); ++i) {
            local.skip(step.bits());
            table = step.nextTable();
            step = steps.step(table, local.bits());
        }
    }
    reader = local;
    return !reader.isOverrun();
}

bool walkStored(BitReader &reader)
{
    const qint64 available = reader.alignToByte();
    if (available < 4)
        return false;
    const auto length = qFromLittleEndian<quint16>(reader.bytes());
    const auto complement = qFromLittleEndian<quint16>(reader.bytes() + 2);
    if ((length ^ complement) != 0xFFFF || available - 4 < length)
        return false;
    reader.skipBytes(4 + length);
    return true;
}

bool walkFixed(BitReader &reader, BlockSteps &steps)
{
    std::array<std::uint8_t, 288> literals{};
    std::fill(literals.begin(), literals.begin() + 144, 8);
    std::fill(literals.begin() + 144, literals.begin() + 256, 9);
    std::fill(literals.begin() + 256, literals.begin() + 280, 7);
    std::fill(literals.begin() + 280, literals.end(), 8);
    std::array<std::uint8_t, 32> distances{};
    distances.fill(5);
    return steps.build(literals.data(), 288, distances.data(), 32) && walkSymbols(reader, steps);
}

/// Reads @p count code lengths, which are coded themselves.
bool readLengths(BitReader &reader, const HuffmanCode &code, std::uint8_t *lengths, int count)
{
    for (int done = 0; done < count;) {
        if (reader.isOverrun())
            return false;
        reader.refill();
        const HuffmanCode::Symbol symbol = code.symbol(reader.bits());
        reader.skip(symbol.length);
        if (symbol.value < 16) {
            lengths[done++] = static_cast<std::uint8_t>(symbol.value);
            continue;
        }
        const bool isPrevious = symbol.value == 16;
        if (isPrevious && done == 0)
            return false;
        const int repeat = isPrevious ? 3 + reader.take(2)
            : symbol.value == 17      ? 3 + reader.take(3)
                                      : 11 + reader.take(7);
        if (repeat > count - done)
            return false;
        std::fill_n(lengths + done, repeat, isPrevious ? lengths[done - 1] : std::uint8_t(0));
        done += repeat;
    }
    return !reader.isOverrun();
}

bool walkDynamic(BitReader &reader, BlockSteps &steps)
{
    static constexpr std::array<std::uint8_t, 19> order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                        11, 4,  12, 3, 13, 2, 14, 1, 15};
    const int literals = 257 + reader.take(5);
    const int distances = 1 + reader.take(5);
    const int lengthCodes = 4 + reader.take(4);
    if (literals > BlockSteps::literalSymbols || distances > BlockSteps::distanceSymbols)
        return false;
    std::array<std::uint8_t, 19> ownLengths{};
    for (int i = 0; i < lengthCodes; ++i) {
        if (reader.isOverrun())
            return false;
        reader.refill();
        ownLengths[order[static_cast<std::size_t>(i)]] = static_cast<std::uint8_t>(reader.take(3));
    }
    HuffmanCode ownCode;
    std::array<std::uint8_t, BlockSteps::literalSymbols + BlockSteps::distanceSymbols> lengths{};
    return ownCode.build(ownLengths.data(), 19)
        && readLengths(reader, ownCode, lengths.data(), literals + distances)
        && steps.build(lengths.data(), literals, lengths.data() + literals, distances)
        && walkSymbols(reader, steps);
}

bool walkBlock(BitReader &reader, BlockSteps &steps, int type)
{
    switch (type) {
    case 0:
        return walkStored(reader);
    case 1:
        return walkFixed(reader, steps);
    case 2:
        return walkDynamic(reader, steps);
    default:
        return false;
    }
}

/// Deflate with a window of 32 KiB and without a dictionary.
bool isPlainHeader(const uchar *stream)
{
    return stream[0] == 0x78 && (stream[0] * 256 + stream[1]) % 31 == 0 && !(stream[1] & 0x20);
}

} // namespace

bool isPlainZlibStream(const uchar *stream, qint64 size)
{
    if (size < headerSize + checksumSize || !isPlainHeader(stream))
        return false;
    BitReader reader(stream + headerSize, stream + size);
    BlockSteps steps;
    // Compressors put thousands of symbols in a block. More blocks are there to waste our time.
    for (qint64 blocksLeft = 8 + size / 1024; blocksLeft > 0; --blocksLeft) {
        if (reader.isOverrun())
            return false;
        reader.refill();
        const bool isLast = reader.take(1) != 0;
        const int type = reader.take(2);
        if (reader.isOverrun() || !walkBlock(reader, steps, type))
            return false;
        if (isLast)
            return reader.alignToByte() == checksumSize;
    }
    return false;
}

} // namespace zyws
