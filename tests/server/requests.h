// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The requests that several server tests send.

#ifndef REQUESTS_H
#define REQUESTS_H

#include <QJsonObject>
#include <QString>

namespace zytest
{

/// A START_FILE request as a slicer sends it.
inline QJsonObject startFile(const QString &name, const QString &size,
                             const QString &key = QStringLiteral("78563412"))
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_FILE")},
        {QStringLiteral("filename"), name},
        {QStringLiteral("size"), size},
        {QStringLiteral("offset"), QStringLiteral("0")},
        {QStringLiteral("key"), key},
    };
}

inline QJsonObject startFile(const QString &name, qint64 size,
                             const QString &key = QStringLiteral("78563412"))
{
    return startFile(name, QString::number(size), key);
}

/// The answer to a START_FILE request that begins a new transfer.
inline QJsonObject accepted(const QString &name, const QString &size)
{
    QJsonObject reply = startFile(name, size);
    reply.insert(QStringLiteral("errorcode"), 0);
    reply.insert(QStringLiteral("compress"), true);
    return reply;
}

/// The answer to a data message.
inline QJsonObject startData(qint64 size, qint64 received, int errorCode = 0,
                             const QString &key = QStringLiteral("78563412"))
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_DATA")},
        {QStringLiteral("key"), key},
        {QStringLiteral("errorcode"), errorCode},
        {QStringLiteral("size"), QString::number(size)},
        {QStringLiteral("received"), QString::number(received)},
    };
}

/// What follows the last data message's answer.
inline QJsonObject checkData(int checkState, const QString &key = QStringLiteral("78563412"))
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("CHECK_DATA")},
        {QStringLiteral("key"), key},
        {QStringLiteral("checkstate"), checkState},
    };
}

/// The refusal of a START_FILE request.
inline QJsonObject refusal(int errorCode, int wifiState)
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_FILE")},
        {QStringLiteral("errorcode"), errorCode},
        {QStringLiteral("compress"), true},
        {QStringLiteral("wifistate"), wifiState},
    };
}

/// The answer to START_PRINT.
inline QJsonObject printStart(const QString &status, const QString &fileName)
{
    return {
        {QStringLiteral("cmd"), QStringLiteral("START_PRINT")},
        {QStringLiteral("status"), status},
        {QStringLiteral("filename"), fileName},
    };
}

} // namespace zytest

#endif // REQUESTS_H
