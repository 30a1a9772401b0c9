// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Every subcommand and option, and the help.

#include "slicercommands.h"

#include "optionvalues.h"
#include "outcome.h"
#include "validators.h"

#include <iomanip>
#include <sstream>

namespace zyslicer
{

namespace
{

void addTrustOptions(CLI::App *command, OptionValues &values)
{
    command
        ->add_option("--ca", values.authorities, "PEM file of who may vouch for a wss:// printer")
        ->type_name("FILE");
    command
        ->add_option("--fingerprint", values.fingerprint,
                     "SHA-256 of the only certificate to accept")
        ->type_name("SHA256HEX");
}

void addPrinterOptions(CLI::App *command, OptionValues &values)
{
    auto *to = command->add_option(
        "--to", values.printers,
        "Printer: URL, saved name or group, or dnssd:NAME;\nrepeat for several");
    to->type_name("PRINTER")->allow_extra_args(false);
    command->add_flag("--all", values.isAll, "All saved printers")->excludes(to);
    command->add_option("--token", values.token, "The printer's access token")
        ->envname("ZYSLICER_TOKEN")
        ->type_name("TOKEN");
    addTrustOptions(command, values);
    command->add_option("--connect-timeout", values.connecting, "Until the connection is open")
        ->check(seconds(0.1))
        ->capture_default_str();
    command->add_option("--timeout", values.reply, "Until a command is answered")
        ->check(seconds(0.1))
        ->capture_default_str();
    command->add_option("--check-timeout", values.check, "Until the printer has checked a model")
        ->check(seconds(0.1))
        ->capture_default_str();
}

void addRetryOptions(CLI::App *command, OptionValues &values)
{
    command->add_option("--retries", values.retries, "Failures in a row to get over")
        ->check(CLI::Range(0, 1000000))
        ->type_name("N")
        ->capture_default_str();
    command
        ->add_option("--back-off", values.backOff,
                     "Pause before the first retry; doubles up to 30 s")
        ->check(seconds(0.01))
        ->capture_default_str();
}

CLI::Option *addWatchOptions(CLI::App *command, OptionValues &values, const std::string &help)
{
    command->add_option("--interval", values.interval, "Between two questions for the status")
        ->check(seconds(0.01))
        ->capture_default_str();
    return command->add_flag("--watch", values.isWatching, help);
}

void addWait(CLI::App *command, OptionValues &values)
{
    command->add_flag("--wait", values.isWaiting,
                      "Wait for a printer that is busy or not there, asking every --interval");
}

void addOutputOptions(CLI::App *command, OptionValues &values)
{
    auto *json = command->add_flag("--json", values.isJson, "One JSON object a line");
    command->add_flag("--quiet", values.isQuiet, "Nothing but errors")->excludes(json);
}

CLI::App *addCommand(CLI::App &parent, OptionValues &values, Request::Command command,
                     const std::string &name, const std::string &help)
{
    CLI::App *added = parent.add_subcommand(name, help);
    added->fallthrough(); // --verbose and --settings may stand after the command
    values.commands[added] = command;
    addOutputOptions(added, values);
    return added;
}

void addSend(CLI::App &app, OptionValues &values)
{
    CLI::App *send = addCommand(app, values, Request::Command::Send, "send",
                                "Send model files; interrupted transfers are resumed");
    send->add_option("FILE", values.files, "Sliced model files")->required()->type_name("");
    addPrinterOptions(send, values);
    send->add_option("--as", values.asName, "Name on the printer, for a single file")
        ->type_name("NAME");
    send->add_option("--stall", values.stall, "Without acknowledgement the transfer is renewed")
        ->check(seconds(0.1))
        ->capture_default_str();
    send->add_option(
            "--compression", values.compressionLevel,
            "From 0 (none) to 9 (smallest); by default as the network and the file want it")
        ->check(CLI::Range(0, 9))
        ->type_name("LEVEL");
    send->add_flag("--no-digest", values.isWithoutDigest,
                   "Do not read the file beforehand for its SHA-256");
    addRetryOptions(send, values);
    send->add_option("--limit-rate", values.rateLimit,
                     "Bytes of the file in a second, on average, such as 500K or 2M")
        ->check(rates())
        ->type_name("RATE");
    send->add_flag("--keep", values.isKeeping,
                   "When interrupted, leave the printer its part, to be resumed");
    addWait(send, values);
    auto *print = send->add_flag("--print", values.isPrinting, "Print it when the check is good");
    addWatchOptions(send, values, "Follow the print until it has ended")->needs(print);
}

void addPrintCommands(CLI::App &app, OptionValues &values)
{
    CLI::App *print = addCommand(app, values, Request::Command::Print, "print",
                                 "Print a file that is on the printer");
    print->add_option("NAME", values.printName, "The file's name on the printer")
        ->required()
        ->type_name("");
    addPrinterOptions(print, values);
    addRetryOptions(print, values);
    addWait(print, values);
    addWatchOptions(print, values, "Follow the print until it has ended");

    addPrinterOptions(addCommand(app, values, Request::Command::Pause, "pause", "Pause the print"),
                      values);
    addPrinterOptions(addCommand(app, values, Request::Command::Stop, "stop", "Stop the print"),
                      values);
    CLI::App *status = addCommand(app, values, Request::Command::Status, "status",
                                  "Show what the printer is doing");
    addPrinterOptions(status, values);
    addRetryOptions(status, values);
    addWatchOptions(status, values, "Follow until nothing prints any more");
}

void addOtherCommands(CLI::App &app, OptionValues &values)
{
    CLI::App *set = addCommand(app, values, Request::Command::Set, "set", "Set print parameters");
    set->add_option("KEY=VALUE", values.parameters, "Parameters: " + parameterNames())
        ->required()
        ->type_name("");
    addPrinterOptions(set, values);
    addPrinterOptions(
        addCommand(app, values, Request::Command::Version, "version", "Ask the printer's version"),
        values);
    addPrinterOptions(addCommand(app, values, Request::Command::Cancel, "cancel",
                                 "Send a cancel, which reaches no transfer of another "
                                 "connection:\nthat is cancelled by Ctrl-C where it is sent"),
                      values);
}

void addPrinters(CLI::App &app, OptionValues &values)
{
    CLI::App *printers = addCommand(app, values, Request::Command::PrintersList, "printers",
                                    "List, add, group and remove saved printers");
    printers->require_subcommand(0, 1);
    CLI::App *add = addCommand(*printers, values, Request::Command::PrintersAdd, "add",
                               "Save a name for a URL, or change what is saved with it");
    add->add_option("NAME", values.savedName, "Letters, digits, '-' and '_'")
        ->required()
        ->type_name("");
    add->add_option("URL", values.savedUrl, "ws://host:port")->required()->type_name("");
    add->add_option("--token", values.token, "Token to save with it; empty to forget one")
        ->type_name("TOKEN");
    addTrustOptions(add, values);
    CLI::App *remove = addCommand(*printers, values, Request::Command::PrintersRemove, "remove",
                                  "Forget a saved printer or group");
    remove->add_option("NAME", values.savedName, "The saved name")->required()->type_name("");
    CLI::App *group = addCommand(*printers, values, Request::Command::PrintersGroup, "group",
                                 "Save a name for several saved printers");
    group->add_option("NAME", values.savedName, "Letters, digits, '-' and '_'")
        ->required()
        ->type_name("");
    group->add_option("PRINTER", values.members, "Saved names")->required()->type_name("");
}

void addDiscover(CLI::App &app, OptionValues &values)
{
    CLI::App *discover = addCommand(app, values, Request::Command::Discover, "discover",
                                    "List the printers that announce themselves on this network");
    discover->add_option("--wait", values.searching, "At most, for those that answer late")
        ->check(seconds(0.1))
        ->capture_default_str();
}

std::string footer()
{
    std::ostringstream text;
    text << "A printer is named by --to with a URL (ws://host:port), with host:port, with a name\n"
            "saved by 'zyslicer printers add' or 'printers group', or as dnssd:NAME with a name "
            "that\n'zyslicer discover' lists. Without --to or --all, the only saved printer is "
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

void addCommands(CLI::App &app, OptionValues &values)
{
    values.app = &app;
    // Not required here, so that a misspelt one is named in the error.
    app.require_subcommand(0, 1);
    zyapp::addVersionFlag(app, "zyslicer");
    app.add_flag("-v,--verbose", values.isVerbose, "Show the log on standard error");
    app.add_option("--settings", values.settingsFile, "File of the saved printers")
        ->envname("ZYSLICER_SETTINGS")
        ->type_name("FILE");
    addSend(app, values);
    addPrintCommands(app, values);
    addOtherCommands(app, values);
    addPrinters(app, values);
    addDiscover(app, values);
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

} // namespace zyslicer
