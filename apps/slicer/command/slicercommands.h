// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the arguments to a request, with the help.

#ifndef SLICERCOMMANDS_H
#define SLICERCOMMANDS_H

#include "request.h"

#include <optional>

namespace zyslicer
{

/// Fills @p request; an exit code when the program is to end here, after help or an error.
std::optional<int> parseRequest(int argc, char **argv, Request &request);

} // namespace zyslicer

#endif // SLICERCOMMANDS_H
