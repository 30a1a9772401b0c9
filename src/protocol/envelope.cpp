// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The message envelope: one JSON object per text message, sizes and offsets as decimal strings.

#include "envelope.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace zyws
{

QJsonObject parseMessage(const QString &message)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(message.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return {};
    return document.object();
}

bool isFlat(const QString &message)
{
    bool isInString = false;
    bool isEscaped = false;
    int containers = 0;
    for (const QChar character : message) {
        if (isEscaped)
            isEscaped = false;
        else if (isInString && character == QLatin1Char('\\'))
            isEscaped = true;
        else if (character == QLatin1Char('"'))
            isInString = !isInString;
        else if (!isInString && (character == QLatin1Char('{') || character == QLatin1Char('[')))
            ++containers;
    }
    return containers <= 1;
}

QString messageText(const QJsonObject &message)
{
    const QByteArray text = QJsonDocument(message).toJson(QJsonDocument::Compact);
    // From the pointer, so that the text ends at the first NUL byte.
    return QString::fromUtf8(text.constData());
}

QString decimal(qint64 value)
{
    return QString::number(value, 10);
}

qint64 decimalValue(const QJsonValue &value)
{
    return value.toString().toLongLong(nullptr, 10);
}

} // namespace zyws
