// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The words that replies carry for a command's result and for the printer's state.

#ifndef STATUSWORDS_H
#define STATUSWORDS_H

#include <QString>

namespace zyws
{

/// What the host decided, as the server's bridge functions return it.
enum HostAnswer {
    Allowed = 0,
    ReceivingFile = 3, ///< some connection is receiving a file
    CheckingPrintFile = 4, ///< some connection is checking a print file
    Refused = 5,
    TokenRejected = 6,
    CommandDone = 7,
    CommandFailed = 8,
};

/// "TOKEN_ERROR", "CMD_SUCCES" or "CMD_FAIL" for 6, 7 and 8; the empty string for any other code.
QString commandResultWord(int code);

/// The word for PrintStatusPara::printStatus; the empty string outside 0 to 8.
QString printStatusWord(int code);

} // namespace zyws

#endif // STATUSWORDS_H
