// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One canonical Huffman code of a deflate block (RFC 1951, 3.2.2).

#ifndef HUFFMANCODE_H
#define HUFFMANCODE_H

#include <QtGlobal>

#include <array>
#include <cstddef>
#include <cstdint>

namespace zyws
{

class HuffmanCode
{
public:
    static constexpr int longest = 15; ///< bits in a code

    /**
     * Takes the lengths of the codes of @p count symbols, at most 288; 0 is for an unused symbol.
     * False, and then not to be used, unless the code is complete: each sequence of bits has
     * exactly one reading.
     */
    bool build(const std::uint8_t *lengths, int count);

    struct Symbol {
        int value;
        int length; ///< of its code
    };

    /// The symbol whose code comes next in @p bits.
    Symbol symbol(quint64 bits) const;

    /**
     * Calls @p place(code, symbol) for every symbol with a code of up to @p width bits, where
     * code's first bit is the least significant one. Complete codes only.
     */
    template <typename Place> void forEachUpTo(int width, Place place) const
    {
        unsigned code = 0;
        std::size_t index = 0;
        for (int length = 1; length <= width; ++length) {
            for (int i = 0; i < m_counts[static_cast<std::size_t>(length)]; ++i) {
                place(code, Symbol{m_symbols[index++], length});
                unsigned bit = 1U << (length - 1);
                for (; code & bit; bit >>= 1)
                    code ^= bit;
                code |= bit;
            }
        }
    }

private:
    std::array<std::int16_t, longest + 1> m_counts{}; ///< symbols by length
    std::array<std::int16_t, 288> m_symbols{}; ///< in the order of their codes
};

} // namespace zyws

#endif // HUFFMANCODE_H
