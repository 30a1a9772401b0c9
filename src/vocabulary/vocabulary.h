// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The wire words of commands and print-start results, as the client needs them.

#ifndef VOCABULARY_H
#define VOCABULARY_H

#include <QLatin1String>

namespace zyws
{

/// Numbers of ZyFileTransHandle::TRANSCMD.
enum class Command {
    StartFile = 1,
    CancelFile = 2,
    StartData = 3,
    CheckData = 4,
    StartPrint = 5,
    PrintPause = 6,
    PrintStop = 7,
    GetPrintStatus = 8,
    VersionCheck = 9,
    PrintParaSet = 10,
    PrintWorkingLife = 11,
};

/// Numbers of ZyFileTransHandle::STAET_PRINT_STATUS.
enum class PrintStart {
    UnStart = 0,
    Busy = 1,
    Checking = 2,
    CheckFalse = 3,
    Started = 4,
    TokenError = 5,
};

/// The word that travels under "cmd".
QLatin1String wireWord(Command command);

/// The word that travels under "status" in the answers to START_PRINT.
QLatin1String wireWord(PrintStart result);

} // namespace zyws

#endif // VOCABULARY_H
