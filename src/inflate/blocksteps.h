// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How far a walk over a deflate block goes at each step.

#ifndef BLOCKSTEPS_H
#define BLOCKSTEPS_H

#include "huffmancode.h"

#include <array>

namespace zyws
{

/// Where in BlockSteps' tables a step is looked up: literals and lengths first, distances behind.
constexpr int stepTableBits = 10;
constexpr unsigned literalTable = 0;
constexpr unsigned distanceTable = 1U << stepTableBits;

/// Bits of the longest step without care: all of a place in the table, and a distance's extra bits.
constexpr int longestStep = stepTableBits + 13;

/**
 * One step of the walk: how many bits it takes, and which table the next one is in.
 *
 * Packed, and with the table as a number to add: a walk costs one look-up after the other, and a
 * branch on the data would be guessed wrong at every other match.
 */
class Step
{
public:
    constexpr Step() = default;
    static constexpr Step literal(int codeBits) { return {codeBits, codeBits, 0, literalTable}; }
    static constexpr Step match(int codeBits, int extraBits)
    {
        return {codeBits, codeBits + extraBits, 0, distanceTable};
    }
    static constexpr Step distance(int codeBits, int extraBits)
    {
        return {codeBits, codeBits + extraBits, 0, literalTable};
    }
    static constexpr Step endOfBlock(int codeBits)
    {
        return {codeBits, codeBits, careful | end, literalTable};
    }
    static constexpr Step meaningless() { return {}; }

    /// Bits of the codes and of the extra bits behind them.
    int bits() const { return static_cast<int>(m_packed & 0x3F); }
    /// Those that decide what the step is: all but the extra bits at its end.
    int decidingBits() const { return static_cast<int>(m_packed >> 8 & 0xFF); }
    unsigned nextTable() const { return m_packed >> 16; }
    /// A walk must not simply go on: the end, or a symbol that needs BlockSteps::carefulStep().
    bool needsCare() const { return m_packed & careful; }
    bool isEndOfBlock() const { return m_packed & end; }
    bool isMeaningless() const { return needsCare() && !isEndOfBlock(); }

    /// This step and @p next, which needs no care, in one.
    Step joined(Step next) const
    {
        return {bits() + next.decidingBits(), bits() + next.bits(), 0, next.nextTable()};
    }

private:
    static constexpr unsigned careful = 0x40;
    static constexpr unsigned end = 0x80;

    constexpr Step(int decidingBits, int bits, unsigned flags, unsigned table)
        : m_packed(static_cast<unsigned>(bits) | flags | static_cast<unsigned>(decidingBits) << 8
                   | table << 16)
    {
    }

    unsigned m_packed = careful;
};

/// The two codes of a block as tables of steps.
class BlockSteps
{
public:
    static constexpr int literalSymbols = 286;
    static constexpr int distanceSymbols = 30;

    /// Takes the lengths of the codes; false unless both codes are complete and the block can end.
    bool build(const std::uint8_t *literalLengths, int literalCount,
               const std::uint8_t *distanceLengths, int distanceCount);

    Step step(unsigned table, quint64 bits) const
    {
        return m_steps[table + static_cast<std::size_t>(bits & (tableSize - 1))];
    }

    /// The one symbol that comes next, however long its code is.
    Step carefulStep(unsigned table, quint64 bits) const;

private:
    static constexpr std::size_t tableSize = std::size_t(1) << stepTableBits;

    void joinSteps();

    HuffmanCode m_literals;
    HuffmanCode m_distances;
    std::array<Step, 2 * tableSize> m_singleSteps; ///< over one symbol each
    std::array<Step, 2 * tableSize> m_steps; ///< over all that a place in the table tells
};

} // namespace zyws

#endif // BLOCKSTEPS_H
