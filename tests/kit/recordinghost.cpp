// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A host application that gives prepared answers and records every question.

#include "recordinghost.h"

#include <zysslechoserver.h>

#include <QRegularExpression>

namespace zytest
{

namespace
{

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

RecordingHost::RecordingHost(ZySslEchoServer *server)
{
    connectTransfers(server);
    connectPrints(server);
    connectStatus(server);
}

void RecordingHost::connectTransfers(ZySslEchoServer *server)
{
    connect(
        server, &ZySslEchoServer::finish, this,
        [this](const QString &path, int &checkState) {
            received(QStringLiteral("finish"), {path, QString::number(checkState)});
            checkState = answers.finish.value_or(checkState);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::getPrintState, this,
        [this](int &state, const QString &token, bool needCheckToken) {
            received(QStringLiteral("getPrintState"),
                     {QString::number(state), token, boolText(needCheckToken)});
            state = answers.getPrintState.value_or(state);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::cancle, this, [this] { received(QStringLiteral("cancle"), {}); },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::fileTranDisconnet, this,
        [this] { received(QStringLiteral("fileTranDisconnet"), {}); }, Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::fileTranStart, this,
        [this] { received(QStringLiteral("fileTranStart"), {}); }, Qt::DirectConnection);
}

void RecordingHost::connectPrints(ZySslEchoServer *server)
{
    connect(
        server, &ZySslEchoServer::checkFile, this,
        [this](const QString &path, int &checkState) {
            received(QStringLiteral("checkFile"), {path, QString::number(checkState)});
            checkState = answers.checkFile.value_or(checkState);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::getFilePrintState, this,
        [this](int &state, const QString &token, bool needCheckToken) {
            received(QStringLiteral("getFilePrintState"),
                     {QString::number(state), token, boolText(needCheckToken)});
            state = answers.getFilePrintState.value_or(state);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::sigDoPrintPause, this,
        [this](int &state, const QString &token) {
            received(QStringLiteral("sigDoPrintPause"), {QString::number(state), token});
            state = answers.sigDoPrintPause.value_or(state);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::sigDoPrintStop, this,
        [this](int &state, const QString &token) {
            received(QStringLiteral("sigDoPrintStop"), {QString::number(state), token});
            state = answers.sigDoPrintStop.value_or(state);
        },
        Qt::DirectConnection);
}

void RecordingHost::connectStatus(ZySslEchoServer *server)
{
    connect(
        server, &ZySslEchoServer::sifGetVersionCheck, this,
        [this](QString &version) {
            received(QStringLiteral("sifGetVersionCheck"), {version});
            version = answers.version.value_or(version);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::sigGetPrinterStatus, this,
        [this](PrintStatusPara &record, const QString &token) {
            m_lastRecord = record;
            received(QStringLiteral("sigGetPrinterStatus"), {recordText(record), token});
            record = answers.status.value_or(record);
        },
        Qt::DirectConnection);
    connect(
        server, &ZySslEchoServer::sigSetPrintPara, this,
        [this](PrintStatusPara &record, const QString &token) {
            m_lastRecord = record;
            received(QStringLiteral("sigSetPrintPara"), {recordText(record), token});
            record = answers.parameters.value_or(record);
        },
        Qt::DirectConnection);
}

void RecordingHost::during(const QString &name, std::function<void()> hook)
{
    m_hooks.insert(name, std::move(hook));
}

QStringList RecordingHost::takeCalls()
{
    const QStringList calls = m_calls.mid(m_taken);
    m_taken = int(m_calls.size());
    return calls;
}

int RecordingHost::count(const QString &name) const
{
    return int(m_calls.filter(QRegularExpression(QStringLiteral("^%1\\(").arg(name))).size());
}

void RecordingHost::received(const QString &name, const QStringList &arguments)
{
    m_calls.append(QStringLiteral("%1(%2)").arg(name, arguments.join(QStringLiteral(", "))));
    // A copy, since a hook may replace itself.
    const std::function<void()> hook = m_hooks.value(name);
    if (hook)
        hook();
}

QString recordText(const PrintStatusPara &record)
{
    const QStringList fields{
        record.filename,
        record.sliceLayerCount,
        record.curSliceLayer,
        record.printRemainTime,
        record.initExposure,
        record.delayLight,
        record.printExposure,
        record.printHeight,
        record.eleSpeed,
        record.bottomExposureNum,
        record.layerThickness,
        record.resin,
        QString::number(record.printStatus),
    };
    return fields.join(QLatin1Char('|'));
}

} // namespace zytest
