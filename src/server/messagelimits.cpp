// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How much of one peer's the server keeps in memory.

#include "messagelimits.h"

#include "report.h"

#include <QWebSocket>

namespace zyws
{

using Failure = ZyServerOptions::Failure;

qint64 largestMessage(const ZyServerOptions &options)
{
    return options.maxDataMessage() == 0 ? 0
                                         : qMax(options.maxDataMessage(), options.maxTextMessage());
}

void limitMessages(QWebSocket *socket, const ZyServerOptions &options)
{
    const auto largest = quint64(largestMessage(options));
    if (largest == 0)
        return;
    socket->setMaxAllowedIncomingFrameSize(largest);
    socket->setMaxAllowedIncomingMessageSize(largest);
}

bool isTextTaken(QWebSocket *socket, const QString &message, const ZyServerOptions &options)
{
    if (options.maxTextMessage() == 0 || message.toUtf8().size() <= options.maxTextMessage())
        return true;
    report(options, Failure::Dropped, QStringLiteral("text message too large"));
    socket->close(QWebSocketProtocol::CloseCodeTooMuchData);
    return false;
}

void limitBacklog(QWebSocket *socket, int waiting, const ZyServerOptions &options)
{
    if (options.maxBacklog() == 0 || waiting <= options.maxBacklog() || !socket->isValid())
        return;
    report(options, Failure::Dropped, QStringLiteral("more messages than can be handled"));
    socket->close(QWebSocketProtocol::CloseCodePolicyViolated);
}

void limitUnread(QWebSocket *socket, const ZyServerOptions &options)
{
    constexpr qint64 KiB = 1024;
    if (options.maxBacklog() == 0 || socket->bytesToWrite() <= options.maxBacklog() * KiB)
        return;
    report(options, Failure::Dropped, QStringLiteral("replies are not read"));
    socket->abort();
}

} // namespace zyws
