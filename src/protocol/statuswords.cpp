// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The words that replies carry for a command's result and for the printer's state.

#include "statuswords.h"

#include <QLatin1String>

#include <array>

namespace zyws
{

QString commandResultWord(int code)
{
    switch (code) {
    case TokenRejected:
        return QStringLiteral("TOKEN_ERROR");
    case CommandDone:
        // Deliberate spelling: deployed slicers compare against it.
        return QStringLiteral("CMD_SUCCES");
    case CommandFailed:
        return QStringLiteral("CMD_FAIL");
    default:
        return {};
    }
}

QString printStatusWord(int code)
{
    // Deliberate spelling of "PRINT_STOPING": deployed slicers compare against it.
    static constexpr std::array<const char *, 9> words{
        "PRINT_GENERAL", "PRINT_PROCESSING", "PRINT_COMPLETE",   "PRINT_FAIL",  "PRINT_END",
        "PRINT_STOP",    "PRINT_STOPING",    "PRINT_COMPLETING", "TOKEN_ERROR",
    };
    if (code < 0 || code >= static_cast<int>(words.size()))
        return {};
    return QLatin1String(words[static_cast<std::size_t>(code)]);
}

} // namespace zyws
