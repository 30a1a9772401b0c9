// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Inflates a chunk with Qt alone, where libdeflate is missing or not wanted.

#include "inflate.h"

namespace zyws
{

QByteArray inflated(const QByteArray &payload)
{
    return qUncompress(payload);
}

} // namespace zyws
