// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zybridge's command line.

#include "bridgeoptions.h"

#include "commandline.h"

namespace zybridge
{

std::optional<int> readOptions(int argc, char **argv, BridgeOptions &options)
{
    std::string file;
    CLI::App app(
        "Connects resin printers to an MQTT broker: their state, commands, files and jobs.",
        "zybridge");
    app.add_option("--config", file, "The configuration file, see zybridge(1)")->required();
    app.add_flag("--check-config", options.isCheck,
                 "Say what is wrong with the configuration file and exit");
    zyapp::addVersionFlag(app, "zybridge");
    app.footer("Exit codes: 0 stopped by a signal, or nothing wrong; 2 wrong usage; 3 wrong\n"
               "configuration; 4 the state directory cannot be used; 5 another bridge of the same\n"
               "name is at the broker.");
    const auto code = zyapp::parse(app, argc, argv);
    options.file = zyapp::fromArgument(file);
    return code;
}

} // namespace zybridge
