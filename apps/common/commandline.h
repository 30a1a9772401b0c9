// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What every program's command line has in common: version, usage errors, texts as Qt has them.

#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include <QString>

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

namespace zyapp
{

inline constexpr int usageError = 2; ///< exit code

/// "--version" for @p app.
void addVersionFlag(CLI::App &app, const std::string &program);

/**
 * Parses the arguments. Nothing when the program is to go on; otherwise its exit code: 0 after
 * "--help" and "--version", usageError after one line on standard error.
 */
std::optional<int> parse(CLI::App &app, int argc, char **argv);

/// A path or text given on the command line.
QString fromArgument(const std::string &argument);

} // namespace zyapp

#endif // COMMANDLINE_H
