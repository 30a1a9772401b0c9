// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter's command line.

#include "printeroptions.h"

#include "commandline.h"

#include <QSysInfo>

#include <cstdlib>

namespace zyprinter
{

namespace
{

/// As CLI11 reads them, before they become Qt's.
struct Arguments {
    std::string directory;
    std::string token;
    std::string name;
    std::string preview;
};

/// Unlike CLI::Range, also against "nan".
auto between(double least, double most)
{
    return [least, most](const std::string &text) {
        char *end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        return *end == '\0' && value >= least && value <= most ? std::string()
                                                               : text + " is no number from "
                + CLI::detail::to_string(least) + " to " + CLI::detail::to_string(most);
    };
}

void addFaults(CLI::App &app, PrinterOptions &options)
{
    const std::string group = "Faults on purpose, for tests of slicers";
    app.add_option("--fail-at", options.failAt, "Let every print fail at LAYER (from 1)")
        ->type_name("LAYER")
        ->check(CLI::Range(1, 1000000))
        ->group(group);
    app.add_option(
           "--slow-check", options.slowCheck,
           "Take SECONDS for the check before a print;\nother connections are served meanwhile")
        ->type_name("SECONDS")
        ->check(between(0, 3600))
        ->group(group);
    app.add_flag("--refuse", options.refuse, "Refuse every transfer, print, pause and stop")
        ->group(group);
}

void addOptions(CLI::App &app, PrinterOptions &options, Arguments &arguments)
{
    app.add_option(
           "--dir", arguments.directory,
           "Keep received models in DIR, which must exist and which no\nother zyprinter uses; "
           "files arrive in DIR/.incoming")
        ->type_name("DIR")
        ->required();
    app.add_option("--port", options.port, "Listen on port N of every address; 0 takes a free one")
        ->type_name("N")
        ->capture_default_str();
    app.add_option("--token", arguments.token,
                   "Ask for this token: for print, pause, stop, status and\nparameters, and for a "
                   "transfer that brings one along")
        ->type_name("TOKEN")
        ->envname("ZYPRINTER_TOKEN");
    app.add_option("--speed", options.speed, "Print X times as fast as a real machine")
        ->type_name("X")
        ->check(between(0.001, 1e6))
        ->capture_default_str();
    app.add_option("--name", arguments.name, "The printer's name; the host's name by default")
        ->type_name("NAME");
    app.add_flag("--view", options.view,
                 "Show a live view instead of log lines,\nwhen standard output is a terminal");
    app.add_option("--preview", arguments.preview,
                   "Keep a picture of the layer being exposed in DIR/layer.png")
        ->type_name("DIR");
}

} // namespace

std::optional<int> readOptions(int argc, char **argv, PrinterOptions &options)
{
    CLI::App app;
    Arguments arguments;
    app.name("zyprinter");
    app.description(
        "A virtual resin printer: receives sliced models over WebSocket, checks them and prints "
        "them\nlayer by layer in accelerated time. Slicers connect to it as to a real one.");
    app.footer(
        "The first line on standard output is\n"
        "  zyprinter: listening on ws://127.0.0.1:PORT\n"
        "and one line for each event follows. Ctrl-C or SIGTERM stops the printer; a transfer that "
        "is\ncut off by that goes on where it stopped when the printer runs again.\n\n"
        "Examples:\n"
        "  zyprinter --dir ~/models --port 8080\n"
        "  zyprinter --dir ~/models --view --speed 100 --preview /tmp\n"
        "  zyprinter --dir /tmp/models --port 8080 --fail-at 300\n\n"
        "Exit codes: 0 stopped, 2 usage, 3 directory missing, not writable or in use by another\n"
        "zyprinter, 4 port in use.");
    addOptions(app, options, arguments);
    addFaults(app, options);
    zyapp::addVersionFlag(app, "zyprinter");
    if (const auto code = zyapp::parse(app, argc, argv))
        return code;
    options.directory = zyapp::fromArgument(arguments.directory);
    options.preview = zyapp::fromArgument(arguments.preview);
    options.token = zyapp::fromArgument(arguments.token);
    options.name = arguments.name.empty() ? QSysInfo::machineHostName()
                                          : zyapp::fromArgument(arguments.name);
    return std::nullopt;
}

} // namespace zyprinter
