// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the arguments to a request, with the help.

#include "requestparser.h"

#include "commandline.h"
#include "options.h"
#include "outcome.h"

#include <iomanip>
#include <sstream>

namespace
{

std::string footer()
{
    std::ostringstream text;
    text << "A printer is named by --to with a URL (ws://host:port), with host:port, or with a "
            "name\nsaved by 'zyslicer printers add'. Without --to, the only saved printer is "
            "meant.\n'zyslicer COMMAND --help' explains a command.\n\n"
            "Examples:\n"
            "  zyslicer printers add bench1 ws://192.168.1.20:8080\n"
            "  zyslicer send part.zydlp --to bench1 --print --watch\n"
            "  zyslicer send part.zydlp --to bench1 --to bench2 --to 192.168.1.22:8080\n"
            "  zyslicer status --to bench1 --watch --json\n\n"
            "Exit codes:\n";
    for (const ExitCodeMeaning &entry : exitCodeMeanings())
        text << std::setw(5) << static_cast<int>(entry.code) << "  " << entry.meaning << '\n';
    return text.str();
}

} // namespace

std::optional<int> parseRequest(int argc, char **argv, Request &request)
{
    CLI::App app("Sends sliced models to resin printers on the network and runs their prints.",
                 "zyslicer");
    OptionValues values;
    addCommands(app, values);
    app.footer(footer);
    // Inside the parsing, so that what it throws becomes a usage error like any other.
    app.callback([&] { values.fill(request); });
    return zyapp::parse(app, argc, argv);
}
