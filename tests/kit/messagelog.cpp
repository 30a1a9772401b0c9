// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A record of the text messages of a test run, to be held against the protocol's schemas.

#include "messagelog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace zytest
{

void logMessage(Sender sender, Maker maker, const QString &text)
{
    static const QString directory = qEnvironmentVariable("ZYWS_MESSAGE_LOG");
    if (directory.isEmpty())
        return;
    static const QString program = QCoreApplication::applicationName();
    static QFile log(QDir(directory).filePath(
        QStringLiteral("%1.%2").arg(program).arg(QCoreApplication::applicationPid())));
    if (!log.isOpen() && !log.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        qFatal("cannot write %s", qPrintable(log.fileName()));
    const bool isSlicer = sender == Sender::Slicer;
    const QJsonObject line{
        {QStringLiteral("sender"), isSlicer ? QStringLiteral("slicer") : QStringLiteral("printer")},
        {QStringLiteral("handmade"), maker == Maker::Test},
        {QStringLiteral("test"),
         program + QLatin1Char(' ') + QLatin1String(QTest::currentTestFunction())},
        {QStringLiteral("text"), text},
    };
    log.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
}

} // namespace zytest
