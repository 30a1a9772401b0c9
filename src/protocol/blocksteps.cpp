// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How far a walk over a deflate block goes at each step.

#include "blocksteps.h"

#include <algorithm>

namespace zyws
{

namespace
{

constexpr int endOfBlockSymbol = 256;

Step literalStep(HuffmanCode::Symbol symbol)
{
    if (symbol.value < endOfBlockSymbol)
        return Step::literal(symbol.length);
    if (symbol.value == endOfBlockSymbol)
        return Step::endOfBlock(symbol.length);
    if (symbol.value >= BlockSteps::literalSymbols)
        return Step::meaningless();
    const bool isExact = symbol.value < 265 || symbol.value == 285;
    return Step::match(symbol.length, isExact ? 0 : (symbol.value - 261) / 4);
}

Step distanceStep(HuffmanCode::Symbol symbol)
{
    if (symbol.value >= BlockSteps::distanceSymbols)
        return Step::meaningless();
    return Step::distance(symbol.length, symbol.value < 4 ? 0 : (symbol.value - 2) / 2);
}

template <typename MakeStep> void fillTable(const HuffmanCode &code, Step *table, MakeStep makeStep)
{
    constexpr unsigned size = 1U << stepTableBits;
    // Places that are left over belong to longer codes.
    std::fill_n(table, size, Step());
    code.forEachUpTo(stepTableBits, [=](unsigned first, HuffmanCode::Symbol symbol) {
        const Step step = makeStep(symbol);
        for (unsigned at = first; at < size; at += 1U << symbol.length)
            table[at] = step;
    });
}

} // namespace

bool BlockSteps::build(const std::uint8_t *literalLengths, int literalCount,
                       const std::uint8_t *distanceLengths, int distanceCount)
{
    if (literalLengths[endOfBlockSymbol] == 0 || !m_literals.build(literalLengths, literalCount)
        || !m_distances.build(distanceLengths, distanceCount))
        return false;
    fillTable(m_literals, &m_steps[literalTable], literalStep);
    fillTable(m_distances, &m_steps[distanceTable], distanceStep);
    joinLiterals();
    return true;
}

/// Lets a literal's step go on over all that fits into its place in the table.
void BlockSteps::joinLiterals()
{
    // Downwards, since what follows a code lies at a lower index.
    for (std::size_t index = tableSize; index-- > 0;) {
        Step step = m_steps[index];
        while (!step.needsCare() && step.nextTable() == literalTable) {
            const Step next = m_steps[index >> step.codeBits()];
            if (next.needsCare() || step.codeBits() + next.codeBits() > stepTableBits)
                break;
            step = step.joined(next);
        }
        m_steps[index] = step;
    }
}

Step BlockSteps::carefulStep(unsigned table, quint64 bits) const
{
    return table == literalTable ? literalStep(m_literals.symbol(bits))
                                 : distanceStep(m_distances.symbol(bits));
}

} // namespace zyws
