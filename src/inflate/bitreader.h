// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads a deflate stream as bits, least significant first.

#ifndef BITREADER_H
#define BITREADER_H

#include <QtEndian>

namespace zyws
{

/// Bits behind the end read as 0 and make isOverrun() true.
class BitReader
{
public:
    BitReader(const uchar *begin, const uchar *end) : m_next(begin), m_end(end) { }

    static constexpr int refilled = 56;

    /// Makes that many bits available to bits(), or all that are left. Not to be called on an
    /// overrun.
    void refill()
    {
        if (m_end - m_next >= 8) {
            // The bits above m_count may be there already; they are the same ones.
            m_bits |= qFromLittleEndian<quint64>(m_next) << m_count;
            m_next += (63 - m_count) >> 3;
            m_count |= refilled;
            return;
        }
        for (; m_count < refilled && m_next < m_end; m_count += 8)
            m_bits |= quint64(*m_next++) << m_count;
    }

    /// The bits to come, the next one in the least significant place.
    quint64 bits() const { return m_bits; }

    void skip(int count)
    {
        m_bits >>= count;
        m_count -= count;
    }

    int take(int count)
    {
        const auto value = static_cast<int>(m_bits & ((Q_UINT64_C(1) << count) - 1));
        skip(count);
        return value;
    }

    bool isOverrun() const { return m_count < 0; }

    /// Drops the rest of the current byte and returns how many whole bytes follow.
    qint64 alignToByte()
    {
        m_next -= m_count >> 3;
        m_bits = 0;
        m_count = 0;
        return m_end - m_next;
    }

    /// The whole bytes to come; only right after alignToByte().
    const uchar *bytes() const { return m_next; }
    void skipBytes(qint64 count) { m_next += count; }

private:
    const uchar *m_next;
    const uchar *m_end;
    quint64 m_bits = 0;
    int m_count = 0;
};

} // namespace zyws

#endif // BITREADER_H
