// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print commands: START_PRINT, PRINT_PAUSE, PRINT_STOP.

#include "handlewatch.h"
#include "messagekeys.h"
#include "statuswords.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <QDir>

namespace keys = zyws::keys;

void ZyFileTransHandle::startPrint(QJsonObject request)
{
    const QString fileName = request.value(keys::filename).toString();
    const QString token = request.value(keys::token).toString();

    const Watch watch(this);
    const int answer = m_server->getFilePrintStatus(token, true);
    if (!watch.isServing())
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
    if (!watch.isServing())
        return;
    const auto result = checkState == 2 ? BUSY : checkState == 1 ? STARTED : CHECK_FALSE;
    sendMessage(printStartReply(result, m_fileName));
    // Deliberate: even after a failed check. Hosts and peers have lived with it.
    m_printState = STARTED;
}

void ZyFileTransHandle::printPause(QJsonObject request)
{
    const Watch watch(this);
    const int answer = m_server->getPrintPauseStatus(request.value(keys::token).toString());
    if (!watch.isServing())
        return;
    sendMessage(commandReply(PRINT_PAUSE, getCmdExeStatusKey(answer)));
    m_printState = STARTED; // deliberate: whatever the outcome; there is no paused value
}

void ZyFileTransHandle::printStop(QJsonObject request)
{
    const Watch watch(this);
    const int answer = m_server->getPrintStopStatus(request.value(keys::token).toString());
    if (!watch.isServing())
        return;
    sendMessage(commandReply(PRINT_STOP, getCmdExeStatusKey(answer)));
    m_printState = UN_START; // deliberate: whatever the outcome
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
