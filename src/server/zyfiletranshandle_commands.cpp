// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The commands: dispatch, and the handlers of all but file transfers.

#include "handleguard.h"
#include "serverlog.h"
#include "vocabulary.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <QDir>

#include <iterator>

namespace keys = zyws::keys;

void ZyFileTransHandle::processJson(QJsonObject json)
{
    struct Dispatch {
        TRANSCMD command;
        void (ZyFileTransHandle::*handler)(QJsonObject);
    };
    // Every request that is answered. Anything else gets no reply at all.
    static constexpr Dispatch table[] = {
        {GET_PRINT_STATUS, &ZyFileTransHandle::getPrintStatus},
        {START_FILE, &ZyFileTransHandle::startFile},
        {CANCEL_FILE, &ZyFileTransHandle::cancelFile},
        {START_PRINT, &ZyFileTransHandle::startPrint},
        {PRINT_PAUSE, &ZyFileTransHandle::printPause},
        {PRINT_STOP, &ZyFileTransHandle::printStop},
        {VERSION_CHECK, &ZyFileTransHandle::verSionCheck},
        {PRINT_PARA_SET, &ZyFileTransHandle::setPrintPara},
    };

    const QString word = json.value(keys::cmd).toString();
    qCDebug(lcZyServer) << "strCmd:" << word;
    if (!passes(json))
        return;
    for (const Dispatch &entry : table) {
        if (word == QLatin1String(m_transCmdEnum.valueToKey(entry.command))) {
            (this->*entry.handler)(json);
            return;
        }
    }
}

QString ZyFileTransHandle::commandWord(int command) const
{
    return QLatin1String(m_transCmdEnum.valueToKey(command));
}

QString ZyFileTransHandle::getCmdExeStatusKey(int code)
{
    switch (code) {
    case zyws::TokenRejected:
        return zyws::results::tokenError;
    case zyws::CommandDone:
        return zyws::results::done;
    case zyws::CommandFailed:
        return zyws::results::failed;
    default:
        return {};
    }
}

QString ZyFileTransHandle::getPrintStatusKey(int code)
{
    const auto &words = zyws::printstates::all;
    return code >= 0 && code < static_cast<int>(std::size(words)) ? QString(words[code])
                                                                  : QString();
}

void ZyFileTransHandle::startPrint(QJsonObject request)
{
    const QString fileName = request.value(keys::filename).toString();
    const QString token = request.value(keys::token).toString();

    const HandleGuard guard(this);
    const int answer = m_server->getFilePrintStatus(token, true);
    if (!guard.isServing())
        return;
    if (answer != zyws::Allowed) {
        sendMessage(
            printStartReply(answer == zyws::TokenRejected ? PRINT_TOKEN_ERROR : BUSY, fileName));
        return;
    }
    if (m_printState == CHECKING) {
        sendMessage(printStartReply(CHECKING, m_fileName));
        return;
    }

    m_printState = CHECKING;
    m_fileName = fileName;
    sendMessage(printStartReply(CHECKING, m_fileName));
    QDir::setCurrent(m_fileDir);
    m_file.setFileName(m_fileName);

    int checkState = 0;
    Q_EMIT checkFile(m_file.fileName(), checkState);
    if (!guard.isServing())
        return;
    const auto result = checkState == 2 ? BUSY : checkState == 1 ? STARTED : CHECK_FALSE;
    sendMessage(printStartReply(result, m_fileName));
    // Deliberate: even after a failed check; deployed hosts and slicers expect it.
    m_printState = STARTED;
}

void ZyFileTransHandle::printPause(QJsonObject request)
{
    const HandleGuard guard(this);
    const int answer = m_server->getPrintPauseStatus(request.value(keys::token).toString());
    if (!guard.isServing())
        return;
    sendMessage(commandReply(PRINT_PAUSE, getCmdExeStatusKey(answer)));
    m_printState = STARTED; // deliberate: whatever the outcome; there is no paused value
}

void ZyFileTransHandle::printStop(QJsonObject request)
{
    const HandleGuard guard(this);
    const int answer = m_server->getPrintStopStatus(request.value(keys::token).toString());
    if (!guard.isServing())
        return;
    sendMessage(commandReply(PRINT_STOP, getCmdExeStatusKey(answer)));
    m_printState = UN_START; // deliberate: whatever the outcome
}

void ZyFileTransHandle::getPrintStatus(QJsonObject request)
{
    PrintStatusPara record;
    const HandleGuard guard(this);
    m_server->getPrinterStatus(record, request.value(keys::token).toString());
    if (guard.isServing())
        sendMessage(statusReply(record));
}

QJsonObject ZyFileTransHandle::statusReply(const PrintStatusPara &record)
{
    QJsonObject reply;
    // One by one: an initializer list would first make a QString of every key.
    reply.insert(keys::bottomExposureNum, record.bottomExposureNum);
    reply.insert(keys::cmd, commandWord(GET_PRINT_STATUS));
    reply.insert(keys::curSliceLayer, record.curSliceLayer);
    reply.insert(keys::delayLight, record.delayLight);
    reply.insert(keys::eleSpeed, record.eleSpeed);
    reply.insert(keys::filename, record.filename);
    reply.insert(keys::initExposure, record.initExposure);
    reply.insert(keys::layerThickness, record.layerThickness);
    reply.insert(keys::printExposure, record.printExposure);
    reply.insert(keys::printHeight, record.printHeight);
    reply.insert(keys::printRemainTime, record.printRemainTime);
    reply.insert(keys::printStatus, getPrintStatusKey(record.printStatus));
    reply.insert(keys::resin, record.resin);
    reply.insert(keys::sliceLayerCount, record.sliceLayerCount);
    return reply;
}

void ZyFileTransHandle::setPrintPara(QJsonObject request)
{
    PrintStatusPara record;
    record.initExposure = request.value(keys::initExposure).toString();
    record.delayLight = request.value(keys::delayLight).toString();
    record.printExposure = request.value(keys::printExposure).toString();
    record.printHeight = request.value(keys::printHeight).toString();
    record.eleSpeed = request.value(keys::eleSpeed).toString();
    record.bottomExposureNum = request.value(keys::bottomExposureNum).toString();

    const HandleGuard guard(this);
    m_server->setPrintPara(record, request.value(keys::token).toString());
    if (!guard.isServing())
        return;
    // Deliberate: the record's state is still 0, so the word is always empty. The reply only
    // acknowledges receipt, and deployed slicers read it so.
    sendMessage(commandReply(PRINT_PARA_SET, getCmdExeStatusKey(record.printStatus)));
}

void ZyFileTransHandle::verSionCheck(QJsonObject request)
{
    Q_UNUSED(request)
    const HandleGuard guard(this);
    const QString version = m_server->getVersionCheck();
    if (!guard.isServing())
        return;
    // Deliberate: the one reply without "cmd"; slicers know it by its "version".
    sendMessage({{keys::version, version}});
}

QJsonObject ZyFileTransHandle::printStartReply(int result, const QString &fileName) const
{
    QJsonObject reply
        = commandReply(START_PRINT, QLatin1String(m_printStatusEnum.valueToKey(result)));
    reply.insert(keys::filename, fileName);
    return reply;
}

QJsonObject ZyFileTransHandle::commandReply(int command, const QString &status) const
{
    return {{keys::cmd, commandWord(command)}, {keys::status, status}};
}
