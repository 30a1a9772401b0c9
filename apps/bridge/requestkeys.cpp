// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which keys a request may have, and of which type their values have to be.

#include "requestkeys.h"

#include <QStringList>

namespace zybridge
{

namespace
{

QString describe(QJsonValue::Type type)
{
    switch (type) {
    case QJsonValue::Bool:
        return QStringLiteral("true or false");
    case QJsonValue::Double:
        return QStringLiteral("a number");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    default:
        return QStringLiteral("a text that is not empty");
    }
}

bool isEmptyText(const QJsonValue &value)
{
    return value.isString() && value.toString().isEmpty();
}

} // namespace

QString keyFault(const QJsonObject &object, const RequestKeys &keys)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        const auto known = keys.constFind(it.key());
        if (known == keys.constEnd())
            return QStringLiteral("there is no key \"%1\" here, only %2")
                .arg(it.key(), QStringList(keys.keys()).join(QStringLiteral(", ")));
        if (it.value().type() != known.value() || isEmptyText(it.value()))
            return QStringLiteral("\"%1\" has to be %2").arg(it.key(), describe(known.value()));
    }
    return {};
}

} // namespace zybridge
