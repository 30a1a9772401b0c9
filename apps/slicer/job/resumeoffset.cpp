// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From which offset a transfer went on.

#include "resumeoffset.h"

namespace zyslicer
{

namespace
{

constexpr qint64 chunkSize = 1048576;

} // namespace

qint64 resumeOffset(qint64 firstReceived, qint64 total)
{
    if (firstReceived < total)
        return qMax<qint64>(0, firstReceived - chunkSize);
    return firstReceived > 0 ? (firstReceived - 1) / chunkSize * chunkSize : 0;
}

} // namespace zyslicer
