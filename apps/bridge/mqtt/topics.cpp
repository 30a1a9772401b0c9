// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The names of the topics, and how JSON travels on them.

#include "topics.h"

#include <QDateTime>
#include <QJsonDocument>

namespace zybridge
{

namespace topics
{

QString ofPrinter(const QString &printer, const char *leaf)
{
    return QStringLiteral("zy/%1/%2").arg(printer, QLatin1String(leaf));
}

QString ofBridge(const QString &bridge, const char *leaf)
{
    return QStringLiteral("zy/bridge/%1/%2").arg(bridge, QLatin1String(leaf));
}

QString ofGroup(const QString &group)
{
    return QStringLiteral("zy/jobs/") + group;
}

QString ofJob(const QString &group, const QString &job)
{
    return ofGroup(group) + QLatin1Char('/') + job;
}

QString sharedGroup(const QString &group)
{
    return QStringLiteral("$share/%1/%2").arg(group, ofGroup(group));
}

} // namespace topics

QByteArray toJson(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<QJsonObject> requestObject(const QByteArray &payload, QString &error, QString &text)
{
    if (payload.size() > largestRequest) {
        error = QStringLiteral("too-large");
        text = QStringLiteral("the request has %1 bytes, and %2 are allowed")
                   .arg(payload.size())
                   .arg(largestRequest);
        return std::nullopt;
    }
    QJsonParseError fault{};
    const QJsonDocument document = QJsonDocument::fromJson(payload, &fault);
    if (document.isObject())
        return document.object();
    error = QStringLiteral("malformed");
    text = fault.error == QJsonParseError::NoError
        ? QStringLiteral("the request is no JSON object")
        : QStringLiteral("the request is no JSON: %1 at byte %2")
              .arg(fault.errorString())
              .arg(fault.offset);
    return std::nullopt;
}

QJsonValue now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

void respond(MqttConnection &broker, const Message &request, const QJsonObject &answer)
{
    if (request.responseTopic.isEmpty() || request.responseTopic.startsWith(QLatin1String("zy/")))
        return;
    Message response;
    response.topic = request.responseTopic;
    response.correlation = request.correlation;
    response.payload = toJson(answer);
    broker.publish(response);
}

QJsonObject failedAnswer(const QString &error, const QString &text)
{
    return {{QStringLiteral("ok"), false},
            {QStringLiteral("error"), error},
            {QStringLiteral("text"), text}};
}

} // namespace zybridge
