// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the kernel knows of this process, or another: its TCP connections, processor time and
// memory.

#ifndef PROCESSVIEW_H
#define PROCESSVIEW_H

#include <QtGlobal>

namespace zytest
{

/// The descriptor of the loopback connection from @p localPort to @p peerPort; -1 when there is
/// none. The client keeps its TCP socket to itself, so this is how a test sees its options.
int connectionDescriptor(quint16 localPort, quint16 peerPort);

/// Bytes that have arrived at that connection and were not read yet; 0 without such a connection.
int unreadBytes(quint16 localPort, quint16 peerPort);

/// A socket option of that connection; -1 without such a connection.
int connectionOption(quint16 localPort, quint16 peerPort, int level, int option);

/// Processor time that this process has used, in milliseconds.
qint64 processorTime();

/// Processor time that another process has used, in microseconds; -1 when it does not run.
qint64 processorTime(qint64 processId);

/// Processor time that the calling thread has used, in milliseconds.
qint64 threadTime();

/// The most memory that this process has ever held, in bytes.
qint64 peakMemory();

} // namespace zytest

#endif // PROCESSVIEW_H
