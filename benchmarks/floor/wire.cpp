// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The protocol's messages in bare Qt: text to object and back, low delay.

#include "wire.h"

#include <QJsonDocument>
#include <QTcpSocket>
#include <QWebSocket>
#include <QWebSocketServer>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace floorbench
{

QJsonObject parse(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

QString text(const QJsonObject &message)
{
    return QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

void setLowDelay(const QWebSocket &connected)
{
    if (auto *tcp = connected.findChild<QTcpSocket *>())
        tcp->setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void setLowDelay(const QWebSocketServer &listening)
{
    const int on = 1;
    setsockopt(static_cast<int>(listening.nativeDescriptor()), IPPROTO_TCP, TCP_NODELAY, &on,
               sizeof on);
}

} // namespace floorbench
