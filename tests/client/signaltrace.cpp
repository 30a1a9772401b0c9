// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// All signals of a client, in the order of their emission, as readable lines.

#include "signaltrace.h"

#include "scriptedprinter.h"

#include <zysslechoclient.h>

#include <QRegularExpression>

namespace zytest
{

namespace
{

QString text(const QString &value)
{
    return value;
}

QString text(qlonglong value)
{
    return QString::number(value);
}

QString text(int value)
{
    return QString::number(value);
}

QString text(const QJsonObject &value)
{
    return compactText(value);
}

} // namespace

SignalTrace::SignalTrace(ZySslEchoClient &client)
{
    using Client = ZySslEchoClient;
    const auto watch = [this, &client](auto signal, const char *name) {
        connect(&client, signal, this, [this, name](const auto &...arguments) {
            add(QLatin1String(name), {text(arguments)...});
        });
    };
    watch(&Client::disconnected, "disconnected");
    watch(&Client::connected, "connected");
    watch(&Client::jsonMessageReceived, "jsonMessageReceived");
    watch(&Client::fileTransProgress, "fileTransProgress");
    watch(&Client::finish, "finish");
    watch(&Client::transError, "transError");
    watch(&Client::cancelFinished, "cancelFinished");
    watch(&Client::pauseSuccess, "pauseSuccess");
    watch(&Client::printErrorCode, "printErrorCode");
    watch(&Client::printBusy, "printBusy");
    watch(&Client::printFileChecking, "printFileChecking");
    watch(&Client::printFileCheckFailed, "printFileCheckFailed");
    watch(&Client::startPrintSuccess, "startPrintSuccess");
    watch(&Client::checkVersion, "checkVersion");
    watch(&Client::getPrinterStatusInfo, "getPrinterStatusInfo");
    watch(&Client::slotGetPrinterWorkingLife, "slotGetPrinterWorkingLife");
}

QStringList SignalTrace::of(const QString &signalName) const
{
    return m_lines.filter(QRegularExpression(QStringLiteral("^%1\\(").arg(signalName)));
}

QStringList SignalTrace::names() const
{
    QStringList names;
    for (const QString &line : m_lines)
        names.append(line.section(QLatin1Char('('), 0, 0));
    return names;
}

void SignalTrace::add(const QString &name, const QStringList &arguments)
{
    m_lines.append(name + QLatin1Char('(') + arguments.join(QLatin1String(", "))
                   + QLatin1Char(')'));
    Q_EMIT grown(m_lines.constLast());
}

} // namespace zytest
