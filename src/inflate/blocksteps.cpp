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
    fillTable(m_literals, &m_singleSteps[literalTable], literalStep);
    fillTable(m_distances, &m_singleSteps[distanceTable], distanceStep);
    joinSteps();
    return true;
}

/// Lets each step go on over all that fits into its place in the table.
void BlockSteps::joinSteps()
{
    for (unsigned at = 0; at < m_steps.size(); ++at) {
        const unsigned index = at & (tableSize - 1);
        Step step = m_singleSteps[at];
        while (!step.needsCare() && step.bits() < stepTableBits) {
            const Step next = m_singleSteps[step.nextTable() + (index >> step.bits())];
            if (next.needsCare() || step.joined(next).decidingBits() > stepTableBits)
                break;
            step = step.joined(next);
        }
        m_steps[at] = step;
    }
}

Step BlockSteps::carefulStep(unsigned table, quint64 bits) const
{
    return table == literalTable ? literalStep(m_literals.symbol(bits))
                                 : distanceStep(m_distances.symbol(bits));
}

} // namespace zyws
