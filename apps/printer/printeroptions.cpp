// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter's command line.

#include "printeroptions.h"

#include "commandline.h"

#include <QSysInfo>

#include <cstdlib>
#include <string>
#include <vector>

namespace zyprinter
{

namespace
{

/// As CLI11 reads them, before they become Qt's.
struct Arguments {
    std::string directory;
    std::string address;
    std::string token;
    std::string name;
    bool isHidden = false;
    std::string preview;
    std::string certFile;
    std::string keyFile;
    std::vector<std::string> origins;
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

/// A variable of a script that is not set is no wish to be unprotected.
std::string notEmpty(const std::string &text)
{
    return text.empty() ? "is empty" : std::string();
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

void addProtection(CLI::App &app, PrinterOptions &options, Arguments &arguments)
{
    const std::string group = "Protection";
    CLI::Option *unprotected
        = app.add_flag(
                 "--unprotected", options.unprotected,
                 "Speak the protocol exactly as deployed printers do, without\nany protection")
              ->group(group);
    std::vector<CLI::Option *> all;
    const auto add = [&](CLI::Option *option, const char *type) {
        all.push_back(option->type_name(type)->group(group));
        return option;
    };
    constexpr int mostMiB = 1 << 30;
    add(app.add_option("--max-size", options.maxSize, "Refuse a file of more than MIB"), "MIB")
        ->check(CLI::Range(1, mostMiB))
        ->capture_default_str();
    add(app.add_option("--keep-free", options.keepFree,
                       "Refuse a file that would leave less than MIB free on the disk"),
        "MIB")
        ->check(CLI::Range(0, mostMiB))
        ->capture_default_str();
    add(app.add_option("--max-connections", options.maxConnections,
                       "Turn away connections beyond N"),
        "N")
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    add(app.add_option("--allow-origin", arguments.origins,
                       "Let web pages of ORIGIN connect, such as http://bench.local;\nmay be "
                       "repeated; all others are turned away"),
        "ORIGIN")
        ->allow_extra_args(false);
    add(app.add_option("--silence", options.silence,
                       "Drop a connection from which nothing comes for S seconds, and\nlet another "
                       "send when the receiving one sends nothing for so long"),
        "S")
        ->check(between(0.1, 86400))
        ->capture_default_str();
    CLI::Option *cert = add(app.add_option("--cert", arguments.certFile,
                                           "Speak wss:// with the PEM certificate in FILE"),
                            "FILE")
                            ->check(notEmpty);
    CLI::Option *key
        = add(app.add_option("--key", arguments.keyFile, "The certificate's PEM key in FILE"),
              "FILE")
              ->check(notEmpty);
    cert->needs(key);
    key->needs(cert);
    // Not CLI::Option::excludes(), which would list them all in the help.
    app.callback([unprotected, all] {
        for (const CLI::Option *option : all) {
            if (unprotected->count() > 0 && option->count() > 0)
                throw CLI::ExcludesError(option->get_name(), unprotected->get_name());
        }
    });
}

void addOptions(CLI::App &app, PrinterOptions &options, Arguments &arguments)
{
    app.add_option(
           "--dir", arguments.directory,
           "Keep received models in DIR, which must exist and which no\nother zyprinter uses; "
           "files arrive in DIR/.incoming")
        ->type_name("DIR")
        ->required();
    app.add_option("--bind", arguments.address,
                   "Listen on this ADDRESS alone, such as 127.0.0.1; by default on all")
        ->type_name("ADDRESS")
        ->check([](const std::string &text) {
            return QHostAddress(zyapp::fromArgument(text)).isNull() ? text + " is no IP address"
                                                                    : std::string();
        });
    app.add_option("--port", options.port, "Listen on port N; 0 takes a free one")
        ->type_name("N")
        ->capture_default_str();
    app.add_option("--token", arguments.token,
                   "Ask for this token: for transfer, print, pause, stop, status\nand parameters")
        ->type_name("TOKEN")
        ->check(notEmpty)
        ->envname("ZYPRINTER_TOKEN");
    app.add_option("--speed", options.speed, "Print X times as fast as a real machine")
        ->type_name("X")
        ->check(between(0.001, 1e6))
        ->capture_default_str();
    app.add_option("--name", arguments.name, "The printer's name; the host's name by default")
        ->type_name("NAME");
    app.add_flag("--no-announce", arguments.isHidden,
                 "Do not announce the printer on the network by DNS-SD");
    app.add_flag("--view", options.view,
                 "Show a live view instead of log lines,\nwhen standard output is a terminal");
    app.add_option("--preview", arguments.preview,
                   "Keep a picture of the layer being exposed in DIR/layer.png")
        ->type_name("DIR")
        ->check(notEmpty);
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
        "zyprinter, 4 port in use, 5 certificate or key not usable, 6 standard output not\n"
        "writable, 7 too few files may be open.");
    addOptions(app, options, arguments);
    addProtection(app, options, arguments);
    addFaults(app, options);
    zyapp::addVersionFlag(app, "zyprinter");
    if (const auto code = zyapp::parse(app, argc, argv))
        return code;
    options.directory = zyapp::fromArgument(arguments.directory);
    options.address = QHostAddress(zyapp::fromArgument(arguments.address));
    options.preview = zyapp::fromArgument(arguments.preview);
    options.certFile = zyapp::fromArgument(arguments.certFile);
    options.keyFile = zyapp::fromArgument(arguments.keyFile);
    for (const std::string &origin : arguments.origins)
        options.origins += zyapp::fromArgument(origin);
    options.token = zyapp::fromArgument(arguments.token);
    options.name = arguments.name.empty() ? QSysInfo::machineHostName()
                                          : zyapp::fromArgument(arguments.name);
    if (!arguments.isHidden)
        options.announcedName = arguments.name.empty()
            ? QStringLiteral("zyprinter on ") + options.name
            : options.name;
    return std::nullopt;
}

} // namespace zyprinter
