// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Messages that no honest peer sends, made from valid ones and from chance.

#include "malformed.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace zytest
{

Malformed::Malformed(quint32 seed, QByteArrayList validTexts)
    : m_random(seed), m_validTexts(std::move(validTexts))
{
}

QString Malformed::text()
{
    QByteArray bytes = m_validTexts.at(below(int(m_validTexts.size())));
    switch (below(5)) {
    case 0:
        bytes = randomBytes(300);
        break;
    case 1:
        bytes = randomJson(6);
        break;
    case 2:
        bytes = retyped(bytes);
        break;
    default:
        bytes = damaged(bytes);
    }
    // An escaped separator as well.
    return QString::fromLatin1(bytes.replace('/', '_').replace("\\u", "\\t"));
}

QByteArray Malformed::binary()
{
    switch (below(4)) {
    case 0:
        return randomBytes(2000);
    case 1: { // a length that is a lie, and now and then one of gigabytes
        QByteArray prefix = randomBytes(8).leftJustified(4, 'x', true);
        if (below(32) != 0)
            prefix[0] = 0;
        return prefix + qCompress(randomBytes(100)).mid(4);
    }
    case 2:
        return qCompress(randomBytes(2000));
    default:
        return damaged(qCompress(randomBytes(2000)));
    }
}

QByteArray Malformed::frames(bool isClient)
{
    if (below(3) == 0)
        return randomBytes(300);
    QByteArray bytes;
    for (int count = below(4); count >= 0; --count) {
        const int length = below(128);
        bytes += static_cast<char>(below(256)); // final, reserved bits, opcode
        bytes += static_cast<char>(isClient ? 0x80 | length : length);
        bytes += randomBytes(16);
        bytes += randomBytes(2 * length + 1);
    }
    return bytes;
}

QByteArray Malformed::randomBytes(int largest)
{
    QByteArray bytes(below(largest), Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(below(256));
    return bytes;
}

QByteArray Malformed::damaged(QByteArray bytes)
{
    for (int count = below(4); count >= 0; --count) {
        const int at = below(int(bytes.size()) + 1);
        switch (below(5)) {
        case 0:
            bytes.truncate(at);
            break;
        case 1:
            bytes.remove(at, below(8));
            break;
        case 2:
            bytes.insert(at, randomBytes(8));
            break;
        case 3:
            bytes.insert(at, bytes.mid(below(int(bytes.size()) + 1), below(20)));
            break;
        default:
            if (at < bytes.size())
                bytes[at] = static_cast<char>(bytes.at(at) ^ (1 << below(8)));
        }
    }
    return bytes;
}

/// Valid JSON with the known keys, and values that nobody expects there.
QByteArray Malformed::retyped(const QByteArray &text)
{
    QByteArray bytes = "{";
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const bool isKept = member.key() == QLatin1String("cmd") || below(3) == 0;
        const QByteArray value = QJsonDocument(QJsonObject{{QStringLiteral("v"), member.value()}})
                                     .toJson(QJsonDocument::Compact)
                                     .mid(5)
                                     .chopped(1);
        bytes += '"' + member.key().toUtf8() + "\":" + (isKept ? value : randomJson(2)) + ',';
    }
    return bytes.chopped(1) + '}';
}

QByteArray Malformed::randomJson(int depth)
{
    if (depth == 0 || below(3) == 0)
        return randomScalar();
    const bool isObject = below(2);
    QByteArrayList members;
    // No key twice: Qt 5.15's parser leaks the first of two values that are arrays or objects.
    for (int count = below(4); count > 0; --count)
        members += (isObject ? "\"" + QByteArray::number(count) + "\":" : QByteArray())
            + randomJson(depth - 1);
    return isObject ? '{' + members.join(',') + '}' : '[' + members.join(',') + ']';
}

QByteArray Malformed::randomScalar()
{
    static const QByteArrayList scalars{
        "null",
        "true",
        "-1",
        "0",
        "1e308",
        "-9223372036854775808",
        "9223372036854775807",
        "\"-1\"",
        "\"0\"",
        "\"1\"",
        "\"9223372036854775807\"",
        "\"-9223372036854775808\"",
        "\"99999999999999999999\"",
        "\"1000000000000\"",
        "\"\"",
        "\"1.5\"",
        "\" 7\"",
        "\"part.bin\"",
        "\"\\u0000\"",
        "\"wifi_tranfer.tmp\"",
        "[]",
        "{}",
    };
    return scalars.at(below(int(scalars.size())));
}

} // namespace zytest
