// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From which offset a transfer went on.

#ifndef RESUMEOFFSET_H
#define RESUMEOFFSET_H

#include <QtGlobal>

namespace zyslicer
{

/**
 * The offset at which the first chunk of a transfer began, from its acknowledgement.
 *
 * The client tells the START_FILE reply, which holds the offset, only after the transfer. But a
 * chunk is 1 MiB unless it is the file's last one, and those before the last are whole.
 */
qint64 resumeOffset(qint64 firstReceived, qint64 total);

} // namespace zyslicer

#endif // RESUMEOFFSET_H
