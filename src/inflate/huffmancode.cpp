// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One canonical Huffman code of a deflate block (RFC 1951, 3.2.2).

#include "huffmancode.h"

namespace zyws
{

bool HuffmanCode::build(const std::uint8_t *lengths, int count)
{
    m_counts.fill(0);
    for (int symbol = 0; symbol < count; ++symbol)
        ++m_counts[lengths[symbol]];
    m_counts[0] = 0;

    std::array<std::int16_t, longest + 2> places{};
    int unused = 1; // codes of the current length that no symbol has taken
    for (std::size_t length = 1; length <= longest; ++length) {
        unused = 2 * unused - m_counts[length];
        if (unused < 0)
            return false;
        places[length + 1] = static_cast<std::int16_t>(places[length] + m_counts[length]);
    }
    if (unused != 0)
        return false;
    for (int symbol = 0; symbol < count; ++symbol) {
        if (lengths[symbol] != 0)
            m_symbols[static_cast<std::size_t>(places[lengths[symbol]]++)]
                = static_cast<std::int16_t>(symbol);
    }
    return true;
}

HuffmanCode::Symbol HuffmanCode::symbol(quint64 bits) const
{
    int code = 0;
    int first = 0; // the lowest code of this length
    int index = 0; // of the symbol that has it
    for (int length = 1;; ++length) {
        code |= static_cast<int>(bits & 1);
        bits >>= 1;
        const int count = m_counts[static_cast<std::size_t>(length)];
        if (code - first < count || length == longest)
            return {m_symbols[static_cast<std::size_t>(index + code - first)], length};
        index += count;
        first = (first + count) << 1;
        code <<= 1;
    }
}

} // namespace zyws
