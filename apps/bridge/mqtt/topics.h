// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The names of the topics, and how JSON travels on them.

#ifndef TOPICS_H
#define TOPICS_H

#include "mqttconnection.h"

#include <QJsonObject>

#include <optional>

namespace zybridge
{

inline constexpr int largestRequest = 65536; ///< bytes of a command's or job's payload

namespace topics
{

QString ofPrinter(const QString &printer, const char *leaf); ///< zy/<printer>/<leaf>
QString ofBridge(const QString &bridge, const char *leaf); ///< zy/bridge/<bridge>/<leaf>
QString ofGroup(const QString &group); ///< zy/jobs/<group>
QString ofJob(const QString &group, const QString &job); ///< zy/jobs/<group>/<job>
QString sharedGroup(const QString &group); ///< $share/<group>/zy/jobs/<group>

} // namespace topics

QByteArray toJson(const QJsonObject &object);

/// The object of a request; nothing, and what is wrong with it, if it is none or too large.
std::optional<QJsonObject> requestObject(const QByteArray &payload, QString &error, QString &text);

/// Milliseconds since 1970.
QJsonValue now();

/// Answers @p request, if it names a response topic. One under "zy/" gets no answer: answers must
/// not be taken for commands.
void respond(MqttConnection &broker, const Message &request, const QJsonObject &answer);

/// {"ok": false, "error": …, "text": …}
QJsonObject failedAnswer(const QString &error, const QString &text);

} // namespace zybridge

#endif // TOPICS_H
