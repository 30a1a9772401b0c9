// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The commands beside a print job: GET_PRINT_STATUS, PRINT_PARA_SET, VERSION_CHECK.

#include "handlewatch.h"
#include "messagekeys.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

namespace keys = zyws::keys;

void ZyFileTransHandle::getPrintStatus(QJsonObject request)
{
    PrintStatusPara record;
    const Watch watch(this);
    m_server->getPrinterStatus(record, request.value(keys::token).toString());
    if (!watch.isServing())
        return;
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
    sendMessage(reply);
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

    const Watch watch(this);
    m_server->setPrintPara(record, request.value(keys::token).toString());
    if (!watch.isServing())
        return;
    // Deliberate: the record's state is still 0, so the word is always empty. The reply only
    // acknowledges receipt, and deployed slicers take it so.
    sendMessage(commandReply(PRINT_PARA_SET, getCmdExeStatusKey(record.printStatus)));
}

void ZyFileTransHandle::verSionCheck(QJsonObject request)
{
    Q_UNUSED(request)
    const Watch watch(this);
    const QString version = m_server->getVersionCheck();
    if (!watch.isServing())
        return;
    // Deliberate: the one reply without "cmd"; slicers know it by its "version".
    sendMessage({{keys::version, version}});
}
