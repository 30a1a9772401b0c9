// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How much of one peer's the server keeps in memory.

#ifndef MESSAGELIMITS_H
#define MESSAGELIMITS_H

#include "zyserveroptions.h"

class QWebSocket;

namespace zyws
{

/// In bytes, of either kind: Qt has one limit for both. 0: any.
qint64 largestMessage(const ZyServerOptions &options);

/// Has Qt close @p socket with code 1009 when a message or a frame of one is too large, before it
/// is read.
void limitMessages(QWebSocket *socket, const ZyServerOptions &options);

/// False for a text message that is too large: @p socket has been closed with code 1009 then.
bool isTextTaken(QWebSocket *socket, const QString &message, const ZyServerOptions &options);

/// Closes @p socket when @p waiting of its messages are more than the options allow.
void limitBacklog(QWebSocket *socket, int waiting, const ZyServerOptions &options);

/// Aborts @p socket when its peer has left too much unread.
void limitUnread(QWebSocket *socket, const ZyServerOptions &options);

} // namespace zyws

#endif // MESSAGELIMITS_H
