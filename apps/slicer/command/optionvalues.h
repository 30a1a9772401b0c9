// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The values that the options are read into, and the request that they make.

#ifndef OPTIONVALUES_H
#define OPTIONVALUES_H

#include "commandline.h"
#include "request.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zyslicer
{

/// What CLI11 reads into; times in seconds.
struct OptionValues {
    std::map<const CLI::App *, Request::Command> commands;
    const CLI::App *app = nullptr;

    std::vector<std::string> printers;
    bool isAll = false;
    std::vector<std::string> members;
    std::string token;
    std::string authorities;
    std::string fingerprint;
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
    double searching = 3;
    int retries = 5;
    std::optional<int> compressionLevel;
    bool isWithoutDigest = false;
    bool isPrinting = false;
    bool isWatching = false;
    bool isWaiting = false;
    bool isKeeping = false;
    std::string rateLimit;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;

    /// Throws a CLI::ValidationError for what no single option can check.
    void fill(Request &request) const;

private:
    void fillTrust(const CLI::App &command, Request &request) const;
    void fillLimits(Request &request) const;
    void fillFiles(const CLI::App &command, Request &request) const;
};

/// Those that "set" knows, as a list to read.
std::string parameterNames();

} // namespace zyslicer

#endif // OPTIONVALUES_H
