// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zymodel: writes a sliced model of a real solid, as a resin printer gets it.

#include "commandline.h"
#include "errorline.h"
#include "gyroidsphere.h"
#include "modelreader.h"
#include "modelwriter.h"

#include <QSaveFile>

#include <cmath>
#include <cstdio>

namespace
{

constexpr int fileError = 3; // exit code
constexpr int invalidModel = 4; // exit code
constexpr double pixelPitch = 0.05; // mm

struct Options {
    std::string out;
    std::string check;
    int layers = 700;
    std::string resolution = "1440x2560";
    quint32 seed = 1;
    std::string resin = "Standard Grey";
    int width = 0;
    int height = 0;
};

QString program()
{
    return QStringLiteral("zymodel");
}

std::string readResolution(const std::string &text, Options &options)
{
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%5dx%5d%c", &options.width, &options.height, &rest);
    const auto isSide = [](int side) { return side >= 1 && side <= zymodel::maxSide; };
    if (read == 2 && isSide(options.width) && isSide(options.height))
        return {};
    return text + " is no WIDTHxHEIGHT in pixels, each from 1 to "
        + std::to_string(zymodel::maxSide);
}

void describe(CLI::App &app, Options &options)
{
    app.name("zymodel");
    app.description("Writes a sliced model: a gyroid lattice inside a sphere, sliced into "
                    "antialiased masks,\nrun-length coded, in the .zydlp container.");
    app.footer(
        "Examples:\n"
        "  zymodel --out sphere.zydlp                 about 50 MiB, for a real transfer\n"
        "  zymodel --out small.zydlp --layers 20 --resolution 144x256\n"
        "  zymodel --check sphere.zydlp               checks every layer\n\n"
        "Exit codes: 0 ok, 2 usage, 3 the file cannot be read or written, 4 no valid model.");
    auto *out = app.add_option("--out", options.out, "Write the model to FILE")->type_name("FILE");
    auto *check = app.add_option("--check", options.check, "Check the model FILE instead")
                      ->type_name("FILE");
    out->excludes(check);
    app.add_option("--layers", options.layers,
                   "Number of layers; the solid's height stays the same")
        ->type_name("N")
        ->check(CLI::Range(1, zymodel::maxLayers))
        ->capture_default_str();
    app.add_option("--resolution", options.resolution, "Pixels of a layer")
        ->type_name("WxH")
        ->check([&options](const std::string &text) { return readResolution(text, options); })
        ->capture_default_str();
    app.add_option("--seed", options.seed, "Moves the lattice, so that another file results")
        ->type_name("S")
        ->capture_default_str();
    app.add_option("--resin", options.resin, "The resin's name in the header")
        ->type_name("NAME")
        ->capture_default_str();
    zyapp::addVersionFlag(app, "zymodel");
}

zymodel::ModelHeader header(const Options &options, double layerThickness)
{
    constexpr double nmPerMm = 1e6;
    zymodel::ModelHeader header;
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
    header.resin = zyapp::fromArgument(options.resin);
    return header;
}

bool writeModel(const Options &options, QIODevice *file)
{
    const zymodel::GyroidSphere solid({options.width, options.height, pixelPitch, options.layers},
                                      options.seed);
    zymodel::ModelWriter writer(file, header(options, solid.layerThickness()));
    QByteArray mask;
    for (int layer = 1; layer <= options.layers; ++layer) {
        solid.render(layer, mask);
        if (!writer.addLayer(mask))
            return false;
    }
    return writer.finish();
}

int generate(const Options &options)
{
    const QString path = zyapp::fromArgument(options.out);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !writeModel(options, &file) || !file.commit()) {
        zyapp::printError(program(),
                          QStringLiteral("cannot write the model (%1)").arg(file.errorString()),
                          path, QStringLiteral("give a --out that can be written"));
        return fileError;
    }
    return 0;
}

int check(const QString &path)
{
    zymodel::ModelReader reader;
    const bool isValid = reader.open(path) && reader.checkAllLayers();
    if (!isValid) {
        const bool isReadable = QFile(path).open(QIODevice::ReadOnly);
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

int main(int argc, char **argv)
{
    Options options;
    CLI::App app;
    describe(app, options);
    if (const auto code = zyapp::parse(app, argc, argv))
        return *code;
    if (options.out.empty() && options.check.empty()) {
        zyapp::printError(program(), QStringLiteral("nothing to do"), {},
                          QStringLiteral("give --out FILE or --check FILE"));
        return zyapp::usageError;
    }
    readResolution(options.resolution, options);
    return options.check.empty() ? generate(options) : check(zyapp::fromArgument(options.check));
}
