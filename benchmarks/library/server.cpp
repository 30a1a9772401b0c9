// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's end through the library's public headers, with the smallest slots that will do.

#include "servermain.h"
#include "statusvalues.h"

#include <zysslechoserver.h>

#include <QCoreApplication>

#include <memory>

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

std::unique_ptr<ZySslEchoServer> makeServer(const zybench::ServerOptions &options)
{
    if (options.protection == QLatin1String("none"))
        return std::make_unique<ZySslEchoServer>(options.port, QString(), QString(),
                                                 options.directory, nullptr);
    ZyServerOptions protection = ZyServerOptions::hardened();
    protection.setSyncsToDisk(options.protection == QLatin1String("synced"));
    protection.setKeepFree(0); // the files lie in a small file system
    return std::make_unique<ZySslEchoServer>(options.port, options.directory, protection);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const zybench::ServerOptions options = zybench::serverOptions(app);
    const auto server = makeServer(options);
    QObject::connect(server.get(), &ZySslEchoServer::getPrintState, server.get(),
                     [](int &answer, const QString &, bool) { answer = 1; });
    QObject::connect(server.get(), &ZySslEchoServer::finish, server.get(),
                     [](const QString &, int &checkState) { checkState = 1; });
    QObject::connect(server.get(), &ZySslEchoServer::sigGetPrinterStatus, server.get(),
                     [](PrintStatusPara &record, const QString &) { fill(record); });
    return zybench::serve(app, server->serverPort());
}
