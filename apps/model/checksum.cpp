// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// CRC-32 as zlib computes it.

#include "checksum.h"

#include <zlib.h>

namespace zymodel
{

quint32 checksum(const QByteArray &bytes)
{
    const auto *data = reinterpret_cast<const Bytef *>(bytes.constData());
    return static_cast<quint32>(crc32_z(0, data, static_cast<z_size_t>(bytes.size())));
}

} // namespace zymodel
