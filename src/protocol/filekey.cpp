// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file key, by which both ends know a transfer again after a dropped connection.

#include "filekey.h"

#include <QtEndian>

#include <array>

namespace zyws
{

QString fileKey(const QByteArray &tail)
{
    std::array<char, fileKeyTail> bytes{};
    std::copy_n(tail.begin(), std::min<qint64>(tail.size(), fileKeyTail), bytes.begin());
    const auto signedKey = qFromLittleEndian<qint32>(bytes.data() + 4);
    // Deliberate: a last byte of 0x80 or more gives 16 digits, because deployed printers compare
    // keys as strings.
    return QString::number(static_cast<quint64>(static_cast<qint64>(signedKey)), 16);
}

} // namespace zyws
