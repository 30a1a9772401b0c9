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
    sendMessage({
        {keys::cmd, commandWord(GET_PRINT_STATUS)},
        {keys::printStatus, getPrintStatusKey(record.printStatus)},
        {keys::filename, record.filename},
        {keys::sliceLayerCount, record.sliceLayerCount},
        {keys::curSliceLayer, record.curSliceLayer},
        {keys::printRemainTime, record.printRemainTime},
        {keys::initExposure, record.initExposure},
        {keys::delayLight, record.delayLight},
        {keys::printExposure, record.printExposure},
        {keys::printHeight, record.printHeight},
        {keys::eleSpeed, record.eleSpeed},
        {keys::bottomExposureNum, record.bottomExposureNum},
        {keys::layerThickness, record.layerThickness},
        {keys::resin, record.resin},
    });
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
