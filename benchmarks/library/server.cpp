// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's end through the library's public headers, with the smallest slots that will do.

#include "servermain.h"
#include "statusvalues.h"

#include <zysslechoserver.h>

#include <QCoreApplication>

namespace
{

void fill(PrintStatusPara &record)
{
    namespace status = zybench::status;
    record.printStatus = 1;
    record.filename = status::filename;
    record.sliceLayerCount = status::sliceLayerCount;
    record.curSliceLayer = status::curSliceLayer;
    record.printRemainTime = status::printRemainTime;
    record.initExposure = status::initExposure;
    record.delayLight = status::delayLight;
    record.printExposure = status::printExposure;
    record.printHeight = status::printHeight;
    record.eleSpeed = status::eleSpeed;
    record.bottomExposureNum = status::bottomExposureNum;
    record.layerThickness = status::layerThickness;
    record.resin = status::resin;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const zybench::ServerOptions options = zybench::serverOptions(app);
    ZySslEchoServer server(options.port, {}, {}, options.directory, nullptr);
    QObject::connect(&server, &ZySslEchoServer::getPrintState, &server,
                     [](int &answer, const QString &, bool) { answer = 1; });
    QObject::connect(&server, &ZySslEchoServer::finish, &server,
                     [](const QString &, int &checkState) { checkState = 1; });
    QObject::connect(&server, &ZySslEchoServer::sigGetPrinterStatus, &server,
                     [](PrintStatusPara &record, const QString &) { fill(record); });
    return zybench::serve(app, server.serverPort());
}
