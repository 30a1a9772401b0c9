// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zymodel: writes a sliced model of a real solid, as a resin printer gets it.

#include "commandline.h"
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
#include <QTemporaryFile>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <unistd.h>

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

int cannotWrite(const QString &fault, const QString &out)
{
    zyapp::printError(program(), QStringLiteral("cannot write the model (%1)").arg(fault), out,
                      QStringLiteral("give a --out that can be written"));
    return fileError;
}

/// Empty, or why the model could not be written.
QString writeModel(const GyroidSphere &solid, const ModelHeader &header, QFileDevice &file)
{
    ModelWriter writer(&file, header);
    QByteArray mask;
    bool isWritten = true;
    for (int layer = 1; isWritten && layer <= int(header.layerCount); ++layer) {
        solid.render(layer, mask);
        isWritten = writer.addLayer(mask);
    }
    if (isWritten && writer.finish() && file.flush())
        return {};
    // What a buffered write has failed for is not always known to the file.
    const int reason = errno;
    return file.error() == QFileDevice::NoError || reason != 0 ? qt_error_string(reason)
                                                               : file.errorString();
}

/// Standard output may be a pipe, and the writer goes back to the beginning at the end.
QString copyToOutput(QFile &file)
{
    constexpr qint64 piece = 1 << 20;
    file.seek(0);
    while (!file.atEnd()) {
        const QByteArray bytes = file.read(piece);
        if (std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout)
            != std::size_t(bytes.size()))
            return qt_error_string(errno);
    }
    return std::fflush(stdout) == 0 ? QString() : qt_error_string(errno);
}

int writeToOutput(const GyroidSphere &solid, const ModelHeader &header)
{
    if (isatty(STDOUT_FILENO) != 0) {
        zyapp::printError(program(), QStringLiteral("standard output is a terminal"), {},
                          QStringLiteral("direct it to a file or a pipe"));
        return zyapp::usageError;
    }
    QTemporaryFile file;
    QString fault = file.open() ? writeModel(solid, header, file) : file.errorString();
    if (fault.isEmpty())
        fault = copyToOutput(file);
    return fault.isEmpty() ? 0 : cannotWrite(fault, QStringLiteral("standard output"));
}

int writeToFile(const GyroidSphere &solid, const ModelHeader &header, const QString &out)
{
    QString fault = zyapp::replacementFault(out);
    if (fault.isEmpty()) {
        QSaveFile file(out);
        if (!file.open(QIODevice::WriteOnly))
            return cannotWrite(file.errorString(), out);
        fault = writeModel(solid, header, file);
        if (fault.isEmpty() && file.commit())
            return 0;
        if (fault.isEmpty())
            fault = file.errorString();
    }
    return cannotWrite(fault, out);
}

int generate(const ModelOptions &options)
{
    const GyroidSphere solid({options.width, options.height, pixelPitch, options.layers},
                             options.seed);
    const ModelHeader modelHeader = header(options, solid.layerThickness());
    const QString fault = headerFault(modelHeader);
    if (!fault.isEmpty()) {
        zyapp::printError(program(), QStringLiteral("no valid model (%1)").arg(fault), {},
                          QStringLiteral("the layers share the solid's height: give another "
                                         "--layers or --resolution"));
        return zyapp::usageError;
    }
    return options.out == QLatin1String("-") ? writeToOutput(solid, modelHeader)
                                             : writeToFile(solid, modelHeader, options.out);
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
                reader.header().layerThickness / 1e3,
                zyapp::onOneLine(reader.header().resin).toUtf8().constData());
    return 0;
}

} // namespace

} // namespace zymodel

int main(int argc, char **argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is an error like a full disk
    zymodel::ModelOptions options;
    if (const auto code = zymodel::readOptions(argc, argv, options))
        return zyapp::onceWritten(zymodel::program(), *code, zymodel::fileError);
    if (!options.check.isEmpty())
        return zyapp::onceWritten(zymodel::program(), zymodel::check(options.check),
                                  zymodel::fileError);
    return zymodel::generate(options);
}
