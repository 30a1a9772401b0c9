// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// JSON objects spelled as on the wire, and their text when a comparison fails.

#ifndef WIREJSON_H
#define WIREJSON_H

#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QTest>

namespace zytest
{

/// The object that @p text spells; anything else ends the test program.
inline QJsonObject json(const QByteArray &text)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        qFatal("Not a JSON object: %s", text.constData());
    return document.object();
}

} // namespace zytest

namespace QTest
{

template <> inline char *toString(const QJsonObject &object)
{
    return toString(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace QTest

#endif // WIREJSON_H
