// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command line: subcommands, options and their help.

#include "commandline.h"

#include "options.h"
#include "outcome.h"
#include "request.h"

#include <CLI/CLI.hpp>

#include <iomanip>
#include <sstream>

namespace
{

std::string footer()
{
    std::ostringstream text;
    text << "Exit codes:\n";
    for (const ExitCodeMeaning &entry : exitCodeMeanings())
        text << std::setw(5) << static_cast<int>(entry.code) << "  " << entry.meaning << '\n';
    text << "\nA printer is named by --to with a URL (ws://host:port), with host:port, or with a "
            "name\nsaved by 'zyslicer printers add'. Without --to, the only saved printer is "
            "meant.\n'zyslicer COMMAND --help' explains a command.";
    return text.str();
}

/// CLI11's messages may have several lines; ours has one.
std::string errorLine(const CLI::App &app, const CLI::Error &error)
{
    std::string message = error.what();
    for (char &c : message) {
        if (c == '\n')
            c = ' ';
    }
    std::string help = "zyslicer";
    for (const CLI::App *command : app.get_subcommands())
        help += ' ' + command->get_name();
    return "zyslicer: wrong usage: " + message + "; see '" + help + " --help'\n";
}

} // namespace

std::optional<int> parseCommandLine(int argc, char **argv, Request &request)
{
    CLI::App app("Sends sliced models to resin printers on the network and runs their prints.",
                 "zyslicer");
    OptionValues values;
    addCommands(app, values);
    app.footer(footer);
    try {
        app.parse(argc, argv);
        values.fill(request);
    } catch (const CLI::Success &help) { // --help and --version
        return app.exit(help);
    } catch (const CLI::Error &error) {
        std::cerr << errorLine(app, error);
        return static_cast<int>(ExitCode::Usage);
    }
    return std::nullopt;
}
