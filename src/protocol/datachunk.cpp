// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The payload of a data message: one chunk of a file, compressed by itself or as it is.

#include "datachunk.h"

#include "inflate.h"

namespace zyws
{

QByteArray packChunk(const char *bytes, int size, bool compress, int compressionLevel)
{
    const QByteArray chunk = QByteArray::fromRawData(bytes, size);
    return compress ? qCompress(chunk, compressionLevel) : chunk;
}

QByteArray unpackChunk(const QByteArray &payload, bool compress)
{
    return compress ? inflated(payload) : payload;
}

qint64 advanced(qint64 offset, qint64 count)
{
    return static_cast<qint64>(static_cast<quint64>(offset) + static_cast<quint64>(count));
}

} // namespace zyws
