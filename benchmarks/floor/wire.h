// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The protocol's messages in bare Qt: text to object and back, low delay, chunk size.

#ifndef WIRE_H
#define WIRE_H

#include <QJsonObject>
#include <QString>

class QWebSocket;
class QWebSocketServer;

namespace floorbench
{

inline constexpr int chunkSize = 1024 * 1024;

QJsonObject parse(const QString &text);
QString text(const QJsonObject &message);

/// Without it the floor would be low: Nagle's algorithm costs a bare transfer half its speed.
void setLowDelay(const QWebSocket &connected);
void setLowDelay(const QWebSocketServer &listening);

} // namespace floorbench

#endif // WIRE_H
