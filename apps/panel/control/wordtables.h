// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The tables: endings, faults, states and parameters, and what they are called.

#ifndef PANEL_WORDTABLES_H
#define PANEL_WORDTABLES_H

#include "words.h"

#include <vocabulary.h>

namespace zypanel::tables
{

using Ending = ZySendResult::Ending;
using ConnectionFault = ZySendResult::ConnectionFault;
using FileFault = ZySendResult::FileFault;
using Interruption = ZySendResult::Interruption;
using Answer = zysession::Exchange::Ending;
using State = zysession::PrinterStatus::State;

struct SendRow {
    Ending ending;
    Severity severity;
    const char *text;
};

// %1 is the file, %2 the printer. Those that are missing here have tables of their own.
inline constexpr SendRow sendEndings[] = {
    {Ending::CheckFailed, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is on %2, which says that it is not a model that it can print.")},
    {Ending::BusyReceiving, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 was not sent: %2 is still receiving a file. It may be an interrupted "
                       "one; try again in a moment.")},
    {Ending::BusyChecking, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 was not sent: %2 is checking a file that is to be printed. Try again "
                       "in a moment.")},
    {Ending::Unwilling, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "%1 was not sent: %2 does not accept files now.")},
    {Ending::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 was not sent: %2 accepts files only with an access token, and files "
                       "are sent without one. Its settings have to allow that.")},
    {Ending::PrinterStorage, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%2 cannot store %1. Its storage may be full or write-protected.")},
    {Ending::PrinterFault, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 was not sent: the answers of %2 make no sense. It may need new "
                       "firmware.")},
    {Ending::LeftForLater, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "Sending %1 was ended too late to cancel it: %2 may have the whole file.")},
};

struct InterruptionRow {
    Interruption interruption;
    const char *text;
};

inline constexpr InterruptionRow interruptions[] = {
    {Interruption::ConnectionLost,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection to %2 was lost while %1 was being sent. Resume sends only "
                       "what is missing.")},
    {Interruption::Stalled,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%2 has stopped answering while %1 was being sent. Resume sends only what "
                       "is missing.")},
    {Interruption::NoVerdict,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%2 has received %1 but does not say what its check found. Sending it "
                       "again asks once more.")},
};

struct ConnectionRow {
    ConnectionFault fault;
    const char *text;
};

inline constexpr ConnectionRow connectionFaults[] = {
    {ConnectionFault::BadAddress,
     QT_TRANSLATE_NOOP("zypanel::Words", "The address of %1 is not that of a printer.")},
    {ConnectionFault::Refused,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "No printer answers at %1: the connection was refused. Check the address "
                       "and the port, and that the printer is switched on.")},
    {ConnectionFault::UnknownHost,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The network knows no %1. Check how the address is spelled.")},
    {ConnectionFault::TimedOut,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 did not answer in time. Check that the printer is switched on and that "
                       "no firewall lies between.")},
    {ConnectionFault::Tls,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "No encrypted connection to %1 is possible. Its certificate may not be "
                       "trusted here.")},
    {ConnectionFault::NotAWebSocket,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "What answers at %1 is not a printer. Check the address and the port.")},
    {ConnectionFault::CertificateUntrusted,
     QT_TRANSLATE_NOOP(
         "zypanel::Words",
         "Nothing here vouches for the certificate of %1, so nothing was sent to it.")},
    {ConnectionFault::CertificateChanged,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The certificate of %1 has changed! Another device may pose as the printer, "
                       "so nothing was sent to it. If the printer has a new certificate, forget "
                       "the printer and connect to its address again.")},
    {ConnectionFault::Network,
     QT_TRANSLATE_NOOP("zypanel::Words", "No connection to %1 is possible.")},
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
    {FileFault::Changed,
     QT_TRANSLATE_NOOP("zypanel::Words", "%1 has changed while it was being sent. Send it again.")},
    {FileFault::NameEmpty,
     QT_TRANSLATE_NOOP("zypanel::Words", "The file needs a name on the printer.")},
    {FileFault::NameHasSeparator,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is no name for a file on the printer: it must not contain a path.")},
    {FileFault::NameIsDirectory,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is no name for a file on the printer: it stands for a folder.")},
    {FileFault::NameHasControlCharacter,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is no name for a file on the printer: it contains a control "
                       "character.")},
    {FileFault::NameReserved,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is a name that the printer keeps for itself. Choose another.")},
    {FileFault::NameTooLong,
     QT_TRANSLATE_NOOP("zypanel::Words", "%1 is too long for a name on the printer.")},
};

struct CommandRow {
    PrinterCommand command;
    Answer answer;
    Severity severity;
    const char *text;
};

inline constexpr CommandRow commandAnswers[] = {
    {PrinterCommand::Print, Answer::Done, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 has started.")},
    {PrinterCommand::Print, Answer::Busy, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 cannot be printed now: the printer is busy with a print, a file or a "
                       "check.")},
    {PrinterCommand::Print, Answer::CheckFailed, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 failed the printer's check: it is missing there, damaged, or made for "
                       "another kind of printer.")},
    {PrinterCommand::Print, Answer::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "%1 is not printed: the printer rejected the access token.")},
    {PrinterCommand::Print, Answer::NoAnswer, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer has not answered whether it prints %1. It may still start "
                       "it.")},
    {PrinterCommand::Print, Answer::ConnectionLost, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection was lost before the printer said whether it prints %1. It "
                       "may still start it.")},

    {PrinterCommand::Continue, Answer::Done, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 goes on.")},
    {PrinterCommand::Continue, Answer::Busy, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 cannot go on now.")},
    {PrinterCommand::Continue, Answer::CheckFailed, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The print of %1 cannot go on: the file is missing on the printer, or it "
                       "is damaged.")},
    {PrinterCommand::Continue, Answer::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The print of %1 does not go on: the printer rejected the access token.")},
    {PrinterCommand::Continue, Answer::NoAnswer, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer has not answered whether the print of %1 goes on. It may "
                       "still do so.")},
    {PrinterCommand::Continue, Answer::ConnectionLost, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection was lost before the printer said whether the print of %1 "
                       "goes on. It may still do so.")},

    {PrinterCommand::Pause, Answer::Done, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer has accepted the pause.")},
    {PrinterCommand::Pause, Answer::Refused, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer cannot pause now. Is it printing at all?")},
    {PrinterCommand::Pause, Answer::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The print is not paused: the printer rejected the access token.")},
    {PrinterCommand::Pause, Answer::NoAnswer, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer has not answered to the pause. It cannot be taken back: the "
                       "printer may still pause, later than you want.")},
    {PrinterCommand::Pause, Answer::ConnectionLost, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection was lost before the printer answered to the pause. It may "
                       "still pause.")},

    {PrinterCommand::Stop, Answer::Done, Severity::Info,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer stops the print.")},
    {PrinterCommand::Stop, Answer::Refused, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer cannot stop now. Is it printing at all?")},
    {PrinterCommand::Stop, Answer::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The print goes on: the printer rejected the access token.")},
    {PrinterCommand::Stop, Answer::NoAnswer, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer has not answered to the stop. It cannot be taken back: the "
                       "printer may still stop the print. If that matters, use its own switch.")},
    {PrinterCommand::Stop, Answer::ConnectionLost, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection was lost before the printer answered to the stop. It may "
                       "still stop the print.")},

    {PrinterCommand::SetParameters, Answer::Done, Severity::Good,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer uses the new print parameters.")},
    {PrinterCommand::SetParameters, Answer::NotTaken, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer keeps values of its own for: %1.")},
    {PrinterCommand::SetParameters, Answer::Refused, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer did not accept the print parameters.")},
    {PrinterCommand::SetParameters, Answer::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP(
         "zypanel::Words",
         "The print parameters are unchanged: the printer rejected the access token.")},
    {PrinterCommand::SetParameters, Answer::NoAnswer, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer has not answered to the print parameters. It may still take "
                       "them.")},
    {PrinterCommand::SetParameters, Answer::ConnectionLost, Severity::Warning,
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The connection was lost before the printer confirmed the print "
                       "parameters.")},
};

struct StateRow {
    State state;
    Severity severity;
    const char *title;
    const char *sentence;
};

inline constexpr StateRow states[] = {
    {State::Unknown, Severity::Warning, QT_TRANSLATE_NOOP("zypanel::Words", "State unknown"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer does not say what it is doing.")},
    {State::Ready, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "Ready"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer is ready.")},
    {State::Printing, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "Printing"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The printer is printing %1.")},
    {State::Complete, Severity::Good, QT_TRANSLATE_NOOP("zypanel::Words", "Print complete"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is complete.")},
    {State::Failed, Severity::Error, QT_TRANSLATE_NOOP("zypanel::Words", "Print failed"),
     QT_TRANSLATE_NOOP(
         "zypanel::Words",
         "The print of %1 has failed. Look at the printer before you start another.")},
    {State::Ended, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "Print ended"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 has ended.")},
    {State::Paused, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "Paused"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is paused.")},
    {State::Halting, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "Coming to a halt"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is coming to a halt.")},
    {State::Completing, Severity::Info, QT_TRANSLATE_NOOP("zypanel::Words", "Finishing"),
     QT_TRANSLATE_NOOP("zypanel::Words", "The print of %1 is being finished.")},
    {State::TokenRejected, Severity::Error,
     QT_TRANSLATE_NOOP("zypanel::Words", "Access token rejected"),
     QT_TRANSLATE_NOOP("zypanel::Words",
                       "The printer rejected the access token. Enter the right one.")},
};

struct ParameterRow {
    QLatin1String key;
    const char *title;
    const char *unit;
    double least;
    double most;
    bool isWhole;
};

// In the order in which people read them; units and ranges as zyprinter documents them.
inline constexpr ParameterRow parameters[] = {
    {zyws::keys::printExposure, QT_TRANSLATE_NOOP("zypanel::Words", "Exposure"),
     QT_TRANSLATE_NOOP("zypanel::Words", "s"), 0.1, 3600, false},
    {zyws::keys::initExposure, QT_TRANSLATE_NOOP("zypanel::Words", "Bottom exposure"),
     QT_TRANSLATE_NOOP("zypanel::Words", "s"), 0.1, 3600, false},
    {zyws::keys::bottomExposureNum, QT_TRANSLATE_NOOP("zypanel::Words", "Bottom layers"), "", 0,
     1000, true},
    {zyws::keys::delayLight, QT_TRANSLATE_NOOP("zypanel::Words", "Light delay"),
     QT_TRANSLATE_NOOP("zypanel::Words", "s"), 0, 3600, false},
    {zyws::keys::printHeight, QT_TRANSLATE_NOOP("zypanel::Words", "Lift height"),
     QT_TRANSLATE_NOOP("zypanel::Words", "mm"), 0.1, 200, false},
    {zyws::keys::eleSpeed, QT_TRANSLATE_NOOP("zypanel::Words", "Lift speed"),
     QT_TRANSLATE_NOOP("zypanel::Words", "mm/min"), 1, 10000, false},
};

} // namespace zypanel::tables

#endif // PANEL_WORDTABLES_H
