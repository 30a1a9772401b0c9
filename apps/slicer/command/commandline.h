// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command line: subcommands, options and their help.

#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include <optional>

struct Request;

/// Fills @p request; an exit code when the program is to end here, after help or an error.
std::optional<int> parseCommandLine(int argc, char **argv, Request &request);

#endif // COMMANDLINE_H
