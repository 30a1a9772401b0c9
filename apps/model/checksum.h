// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// CRC-32 as zlib computes it.

#ifndef CHECKSUM_H
#define CHECKSUM_H

#include <QByteArray>

namespace zymodel
{

/// CRC-32 (ISO 3309, as in PNG and gzip) of @p bytes.
quint32 checksum(const QByteArray &bytes);

} // namespace zymodel

#endif // CHECKSUM_H
