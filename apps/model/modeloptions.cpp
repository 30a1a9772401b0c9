// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zymodel's command line.

#include "modeloptions.h"

#include "commandline.h"
#include "errorline.h"
#include "modelheader.h"

#include <cstdio>

namespace zymodel
{

namespace
{

/// As CLI11 reads them, before they become Qt's.
struct Arguments {
    std::string out;
    std::string check;
    std::string resolution = "1440x2560";
    std::string resin = "Standard Grey";
};

std::string readResolution(const std::string &text, ModelOptions &options)
{
    char rest = 0;
    const int read = std::sscanf(text.c_str(), "%5dx%5d%c", &options.width, &options.height, &rest);
    const auto isSide = [](int side) { return side >= 1 && side <= maxSide; };
    if (read == 2 && isSide(options.width) && isSide(options.height))
        return {};
    return text + " is no WIDTHxHEIGHT in pixels, each from 1 to " + std::to_string(maxSide);
}

void describe(CLI::App &app, ModelOptions &options, Arguments &arguments)
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
    auto *out
        = app.add_option("--out", arguments.out, "Write the model to FILE")->type_name("FILE");
    auto *check = app.add_option("--check", arguments.check, "Check the model FILE instead")
                      ->type_name("FILE");
    out->excludes(check);
    app.add_option("--layers", options.layers,
                   "Number of layers; the solid's height stays the same")
        ->type_name("N")
        ->check(CLI::Range(1, maxLayers))
        ->capture_default_str();
    app.add_option("--resolution", arguments.resolution, "Pixels of a layer")
        ->type_name("WxH")
        ->check([&options](const std::string &text) { return readResolution(text, options); })
        ->capture_default_str();
    app.add_option("--seed", options.seed, "Moves the lattice, so that another file results")
        ->type_name("S")
        ->capture_default_str();
    app.add_option("--resin", arguments.resin,
                   "The resin's name in the header, at most 255 bytes of UTF-8")
        ->type_name("NAME")
        ->capture_default_str();
    zyapp::addVersionFlag(app, "zymodel");
}

std::optional<int> checkResin(const QString &name)
{
    const auto bytes = name.toUtf8().size();
    if (bytes <= maxResinBytes)
        return std::nullopt;
    zyapp::printError(QStringLiteral("zymodel"),
                      QStringLiteral("the resin's name takes %1 bytes of UTF-8").arg(bytes), name,
                      QStringLiteral("give a --resin of at most %1 bytes").arg(maxResinBytes));
    return zyapp::usageError;
}

} // namespace

std::optional<int> readOptions(int argc, char **argv, ModelOptions &options)
{
    CLI::App app;
    Arguments arguments;
    describe(app, options, arguments);
    if (const auto code = zyapp::parse(app, argc, argv))
        return code;
    if (arguments.out.empty() && arguments.check.empty()) {
        zyapp::printError(QStringLiteral("zymodel"), QStringLiteral("nothing to do"), {},
                          QStringLiteral("give --out FILE or --check FILE"));
        return zyapp::usageError;
    }
    options.out = zyapp::fromArgument(arguments.out);
    options.check = zyapp::fromArgument(arguments.check);
    options.resin = zyapp::fromArgument(arguments.resin);
    return checkResin(options.resin);
}

} // namespace zymodel
