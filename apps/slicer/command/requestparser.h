// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the arguments to a request, with the help.

#ifndef REQUESTPARSER_H
#define REQUESTPARSER_H

#include <optional>

struct Request;

/// Fills @p request; an exit code when the program is to end here, after help or an error.
std::optional<int> parseRequest(int argc, char **argv, Request &request);

#endif // REQUESTPARSER_H
