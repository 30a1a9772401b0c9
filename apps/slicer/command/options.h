// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Every subcommand and option, and the values they are read into.

#ifndef OPTIONS_H
#define OPTIONS_H

#include "request.h"

#include <map>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

/// What CLI11 reads into; times in seconds.
struct OptionValues {
    std::map<const CLI::App *, Request::Command> commands;
    const CLI::App *app = nullptr;

    std::vector<std::string> printers;
    std::string token;
    std::vector<std::string> files;
    std::string asName;
    std::string printName;
    std::vector<std::string> parameters;
    std::string savedName;
    std::string savedUrl;
    std::string settingsFile;
    double connecting = 10;
    double reply = 30;
    double check = 120;
    double stall = 15;
    double backOff = 1;
    double interval = 1;
    int retries = 5;
    int compressionLevel = 1;
    bool isPrinting = false;
    bool isWatching = false;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;

    /// Throws a CLI::ValidationError for what single options cannot tell.
    void fill(Request &request) const;

private:
    void fillLimits(Limits &limits) const;
    void fillRemoteName(const CLI::App &command, Request &request) const;
};

void addCommands(CLI::App &app, OptionValues &values);

#endif // OPTIONS_H
