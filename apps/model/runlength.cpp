// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The run-length code of a layer's mask: a grey value, then how many pixels have it.

#include "runlength.h"

#include <algorithm>
#include <cstring>

namespace zymodel
{

namespace
{

/// The first byte in [from, end) that differs from *from.
const char *runEnd(const char *from, const char *end)
{
    quint64 pattern;
    std::memset(&pattern, static_cast<uchar>(*from), sizeof pattern);
    const char *byte = from + 1;
    // Most of a mask is black or white: eight pixels at a time.
    for (quint64 eight; end - byte >= qint64(sizeof eight); byte += sizeof eight) {
        std::memcpy(&eight, byte, sizeof eight);
        if (eight != pattern)
            break;
    }
    while (byte != end && *byte == *from)
        ++byte;
    return byte;
}

} // namespace

QByteArray encodeMask(const QByteArray &mask)
{
    QByteArray code;
    code.reserve(mask.size() / 16);
    const char *const end = mask.constEnd();
    for (const char *pixel = mask.constBegin(); pixel != end;) {
        const char *next = runEnd(pixel, pixel + std::min<qint64>(end - pixel, longestRun));
        code.append(*pixel);
        auto length = quint64(next - pixel);
        for (; length > 0x7f; length >>= 7)
            code.append(static_cast<char>(0x80 | (length & 0x7f)));
        code.append(static_cast<char>(length));
        pixel = next;
    }
    return code;
}

bool isMaskCode(const QByteArray &code, qint64 pixels)
{
    return forEachRun(code, pixels, [](uchar, qint64) {});
}

bool decodeMask(const QByteArray &code, QByteArray &mask)
{
    char *pixel = mask.data();
    return forEachRun(code, mask.size(), [&pixel](uchar value, qint64 length) {
        std::memset(pixel, value, static_cast<std::size_t>(length));
        pixel += length;
    });
}

} // namespace zymodel
