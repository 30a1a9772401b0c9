// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The tables: codes and words of a printer, faults of the link and of files, and what they mean.

#ifndef PANEL_WORDTABLES_H
#define PANEL_WORDTABLES_H

#include "words.h"

#include <QLatin1String>

namespace zypanel::tables
{

using State = PrinterStatus::State;

struct TransferRow {
    int code;
    int wifiState; ///< 0 matches any
    Severity severity;
    const char *text;
};

// The first row that matches counts.
inline constexpr TransferRow transferErrors[] = {
    {-2, 0, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The file could not be opened when the printer asked for it. It may have "
                       "been moved or deleted. The connection is opened anew.")},
    {-1, 0, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The file cannot be read. Check that it still exists and that you may open "
                       "it.")},
    {1, 3, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer is already receiving a file, perhaps from somebody else. Try "
                       "again when that has ended.")},
    {1, 4, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer is checking a file that is to be printed. Try again in a "
                       "moment.")},
    {1, 5, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer does not accept a file now, most likely because it is "
                       "printing.")},
    {1, 0, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer is busy and does not accept a file now.")},
    {2, 0, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer cannot store the file. Its storage may be full or "
                       "write-protected.")},
    {3, 0, Severity::Error,
     QT_TRANSLATE_NOOP(
         "zypanel::Words",
         "The printer refused the file because of a fault that it does not explain.")},
    {4, 0, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer accepts files only with an access token, and files are sent "
                       "without one. Its settings have to allow that.")},
};

struct CodeRow {
    int code;
    Severity severity;
    const char *text;
};

inline constexpr CodeRow printAnswers[] = {
    {0, Severity::Good, QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 has started.")},
    {1, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 cannot be printed now: the printer is busy with a print, a file or a "
                       "check.")},
    {2, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "The printer is checking %1.")},
    {3, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 failed the printer's check: it is missing there, damaged, or made for "
                       "another kind of printer.")},
    {4, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is not printed: the printer rejected the access token.")},
};

inline constexpr CodeRow checkStates[] = {
    {0, Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is on the printer. The printer did not say whether it can print it.")},
    {1, Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words", "%1 is on the printer and ready to print.")},
    {2, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is on the printer, but the printer says that it is not a model that it "
                       "can print.")},
};

struct WordRow {
    Command command;
    QLatin1String word;
    Severity severity;
    const char *text;
};

inline const WordRow commandResults[] = {
    {Command::Pause, QLatin1String("CMD_SUCCES"), Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer has accepted the pause.")},
    {Command::Pause, QLatin1String("CMD_FAIL"), Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer cannot pause now. Is it printing at all?")},
    {Command::Pause, QLatin1String("TOKEN_ERROR"), Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The print is not paused: the printer rejected the access token.")},
    {Command::Stop, QLatin1String("CMD_SUCCES"), Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer stops the print.")},
    {Command::Stop, QLatin1String("CMD_FAIL"), Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer cannot stop now. Is it printing at all?")},
    {Command::Stop, QLatin1String("TOKEN_ERROR"), Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The print goes on: the printer rejected the access token.")},
    {Command::SetParameters, QLatin1String("CMD_SUCCES"), Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer has accepted the print parameters.")},
    {Command::SetParameters, QLatin1String("CMD_FAIL"), Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer did not accept the print parameters.")},
    {Command::SetParameters, QLatin1String("TOKEN_ERROR"), Severity::Error,
     QT_TRANSLATE_NOOP(
         "zypanel::Words",
         "The print parameters are unchanged: the printer rejected the access token.")},
    // What the printer's half of this library always answers: it only acknowledges.
    {Command::SetParameters, QLatin1String(""), Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer has received the print parameters.")},
};

struct StateRow {
    QLatin1String word;
    State state;
    Severity severity;
    const char *title;
    const char *sentence;
};

inline const StateRow states[] = {
    {QLatin1String("PRINT_GENERAL"), State::Ready, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "Ready"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer is ready.")},
    {QLatin1String("PRINT_PROCESSING"), State::Printing, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "Printing"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer is printing %1.")},
    {QLatin1String("PRINT_COMPLETE"), State::Complete, Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words", "Print complete"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is complete.")},
    {QLatin1String("PRINT_FAIL"), State::Failed, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words", "Print failed"),
     QT_TRANSLATE_NOOP(
         "zypanel::Words",
         "The print of %1 has failed. Look at the printer before you start another.")},
    {QLatin1String("PRINT_END"), State::Ended, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "Print ended"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 has ended.")},
    {QLatin1String("PRINT_STOP"), State::Paused, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "Paused"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is paused.")},
    {QLatin1String("PRINT_STOPING"), State::Halting, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "Coming to a halt"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is coming to a halt.")},
    {QLatin1String("PRINT_COMPLETING"), State::Completing, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "Finishing"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is being finished.")},
    {QLatin1String("TOKEN_ERROR"), State::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words", "Access token rejected"),
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer rejected the access token. Enter the right one.")},
};

struct LinkRow {
    LinkFault fault;
    Severity severity;
    const char *text;
};

inline constexpr LinkRow linkFaults[] = {
    {LinkFault::NoAnswer, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "No printer answers at %1. Check the address, and that the printer is "
                       "switched on and in the same network.")},
    {LinkFault::TimedOut, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 did not answer in time. Check that the printer is switched on and that "
                       "no firewall lies between.")},
    {LinkFault::Lost, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words", "The connection to %1 was lost.")},
    {LinkFault::LostWhileSending, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection to %1 was lost while the file was being sent. Resume sends "
                       "only what is missing.")},
    {LinkFault::LostWhileCancelling, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection to %1 was lost before it confirmed the cancel.")},
    {LinkFault::Stalled, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 has stopped answering while the file was being sent. The connection is "
                       "closed; resume sends only what is missing.")},
    {LinkFault::CancelUnconfirmed, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 did not confirm the cancel. The connection is closed.")},
    {LinkFault::Silent, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 does not answer at the moment. It may be checking a file.")},
};

struct FileRow {
    FileFault fault;
    const char *text;
};

inline constexpr FileRow fileFaults[] = {
    {FileFault::Missing, QT_TRANSLATE_NOOP("zypanel::Words", "There is no file %1.")},
    {FileFault::NotAFile, QT_TRANSLATE_NOOP("zypanel::Words", "%1 is not a file.")},
    {FileFault::Unreadable, QT_TRANSLATE_NOOP("zypanel::Words", "%1 cannot be read.")},
    {FileFault::Empty,
     QT_TRANSLATE_NOOP("zypanel::Words", "%1 is empty; there is nothing to send.")},
    {FileFault::NameMissing,
     QT_TRANSLATE_NOOP("zypanel::Words", "The file needs a name on the printer.")},
    {FileFault::NameHasPath,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is no name for a file on the printer: it must not contain a path.")},
    {FileFault::NameReserved,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is a name that the printer keeps for itself. Choose another.")},
};

struct ParameterRow {
    QLatin1String key;
    const char *title;
};

inline const ParameterRow parameters[] = {
    {QLatin1String("printExposure"), QT_TRANSLATE_NOOP("zypanel::Words", "Exposure")},
    {QLatin1String("initExposure"), QT_TRANSLATE_NOOP("zypanel::Words", "Bottom exposure")},
    {QLatin1String("bottomExposureNum"), QT_TRANSLATE_NOOP("zypanel::Words", "Bottom layers")},
    {QLatin1String("delayLight"), QT_TRANSLATE_NOOP("zypanel::Words", "Light delay")},
    {QLatin1String("printHeight"), QT_TRANSLATE_NOOP("zypanel::Words", "Lift height")},
    {QLatin1String("eleSpeed"), QT_TRANSLATE_NOOP("zypanel::Words", "Lift speed")},
};

} // namespace zypanel::tables

#endif // PANEL_WORDTABLES_H
