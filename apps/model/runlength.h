// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The run-length code of a layer's mask: a grey value, then how many pixels have it.

#ifndef RUNLENGTH_H
#define RUNLENGTH_H

#include <QByteArray>

namespace zymodel
{

/// What the length of a run can say in its four bytes of seven bits; a longer one is two runs.
constexpr qint64 longestRun = (1 << 28) - 1;

/// The code of @p mask, one byte per pixel. Runs go on across the ends of rows.
QByteArray encodeMask(const QByteArray &mask);

/**
 * Walks over @p code and calls `run(value, length)` for each run.
 *
 * False when the code does not describe exactly @p pixels pixels; runs up to the fault have been
 * reported by then, none of them beyond @p pixels.
 */
template <typename Run> bool forEachRun(const QByteArray &code, qint64 pixels, Run run);

/// True when @p code describes exactly @p pixels pixels.
bool isMaskCode(const QByteArray &code, qint64 pixels);

/// Decodes into @p mask, which has the mask's size; false for anything but exactly that size.
bool decodeMask(const QByteArray &code, QByteArray &mask);

template <typename Run> bool forEachRun(const QByteArray &code, qint64 pixels, Run run)
{
    constexpr int bitsPerByte = 7;
    constexpr int longestLength = 4 * bitsPerByte;
    const char *byte = code.constBegin();
    const char *const end = code.constEnd();
    qint64 left = pixels;
    while (byte != end) {
        const auto value = static_cast<uchar>(*byte++);
        qint64 length = 0;
        bool isLast = false;
        for (int shift = 0; !isLast; shift += bitsPerByte) {
            if (byte == end || shift == longestLength)
                return false;
            const auto piece = static_cast<uchar>(*byte++);
            length |= qint64(piece & 0x7f) << shift;
            isLast = (piece & 0x80) == 0;
        }
        if (length == 0 || length > left)
            return false;
        left -= length;
        run(value, length);
    }
    return left == 0;
}

} // namespace zymodel

#endif // RUNLENGTH_H
