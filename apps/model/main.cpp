// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zymodel: writes a sliced model of a real solid, as a resin printer gets it.

#include "errorline.h"
#include "gyroidsphere.h"
#include "modeloptions.h"
#include "modelreader.h"
#include "modelwriter.h"
#include "replacement.h"
#include "resources.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cmath>
#include <cstdio>

namespace zymodel
{

namespace
{

constexpr int fileError = 3; // exit code
constexpr int invalidModel = 4; // exit code
constexpr double pixelPitch = 0.05; // mm

QString program()
{
    return QStringLiteral("zymodel");
}

ModelHeader header(const ModelOptions &options, double layerThickness)
{
    constexpr double nmPerMm = 1e6;
    ModelHeader header;
    header.layerCount = quint32(options.layers);
    header.width = quint32(options.width);
    header.height = quint32(options.height);
    header.pixelPitch = quint32(pixelPitch * nmPerMm);
    header.layerThickness = quint32(std::lround(layerThickness * nmPerMm));
    header.exposure = 2500;
    header.bottomExposure = 30000;
    header.bottomLayers = quint32(qMin(5, options.layers));
    header.lightDelay = 500;
    header.liftHeight = 5000;
    header.liftSpeed = 120000;
    header.resin = options.resin;
    return header;
}

bool writeModel(const ModelOptions &options, QIODevice *file)
{
    const GyroidSphere solid({options.width, options.height, pixelPitch, options.layers},
                             options.seed);
    ModelWriter writer(file, header(options, solid.layerThickness()));
    QByteArray mask;
    for (int layer = 1; layer <= options.layers; ++layer) {
        solid.render(layer, mask);
        if (!writer.addLayer(mask))
            return false;
    }
    return writer.finish();
}

int generate(const ModelOptions &options)
{
    QString fault = zyapp::replacementFault(options.out);
    if (fault.isEmpty()) {
        QSaveFile file(options.out);
        if (file.open(QIODevice::WriteOnly) && writeModel(options, &file) && file.commit())
            return 0;
        fault = file.errorString();
    }
    zyapp::printError(program(), QStringLiteral("cannot write the model (%1)").arg(fault),
                      options.out, QStringLiteral("give a --out that can be written"));
    return fileError;
}

int check(const QString &path)
{
    ModelReader reader;
    const bool isValid = reader.open(path) && reader.checkAllLayers();
    if (!isValid) {
        const bool isReadable = QFileInfo(path).isFile() && QFile(path).open(QIODevice::ReadOnly);
        zyapp::printError(program(),
                          isReadable
                              ? QStringLiteral("no valid model (%1)").arg(reader.error())
                              : QStringLiteral("cannot read the model (%1)").arg(reader.error()),
                          path, QStringLiteral("slice or copy it again"));
        return isReadable ? invalidModel : fileError;
    }
    std::printf("%d layers of %ux%u pixels, %.1f um each, resin \"%s\": valid\n",
                reader.layerCount(), reader.header().width, reader.header().height,
                reader.header().layerThickness / 1e3, qPrintable(reader.header().resin));
    return 0;
}

} // namespace

} // namespace zymodel

int main(int argc, char **argv)
{
    zymodel::ModelOptions options;
    if (const auto code = zymodel::readOptions(argc, argv, options))
        return zyapp::onceWritten(zymodel::program(), *code, zymodel::fileError);
    if (!options.check.isEmpty())
        return zyapp::onceWritten(zymodel::program(), zymodel::check(options.check),
                                  zymodel::fileError);
    return zymodel::generate(options);
}
