// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The exit codes' meanings and the text of a failure.

#include "outcome.h"

#include <algorithm>

namespace zyslicer
{

const QVector<ExitCodeMeaning> &exitCodeMeanings()
{
    static const QVector<ExitCodeMeaning> meanings{
        {ExitCode::Ok, "done"},
        {ExitCode::Usage, "wrong usage: unknown option, printer name or parameter"},
        {ExitCode::NoConnection,
         "no connection to the printer, or no answer from it; or no printer found"},
        {ExitCode::Busy, "refused: the printer is busy receiving, checking or printing"},
        {ExitCode::Refused, "refused by the printer for another reason"},
        {ExitCode::TokenRejected, "the printer rejected the token"},
        {ExitCode::LocalFile,
         "local file missing, unreadable, empty or not sendable by its name;\n"
         "       or the settings or standard output not readable or writable; or too\n       few "
         "files may be open"},
        {ExitCode::CheckFailed, "the printer's check of the model failed"},
        {ExitCode::PrintFailed, "the print failed or was stopped"},
        {ExitCode::SomeFailed,
         "of several files or printers some failed, or all for different reasons"},
        {ExitCode::GivenUp, "transfer given up: stalled or dropped after all retries"},
        {ExitCode::NoDiscovery, "printers cannot be looked for: no Avahi daemon, or built without"},
        {ExitCode::Interrupted, "interrupted"},
    };
    return meanings;
}

QString Outcome::text() const
{
    return what + QStringLiteral(": ") + value + QStringLiteral("; ") + advice;
}

ExitCode combinedExitCode(const Outcomes &outcomes)
{
    const auto hasCode = [](ExitCode code) {
        return [code](const Outcome &outcome) { return outcome.code == code; };
    };
    if (std::any_of(outcomes.begin(), outcomes.end(), hasCode(ExitCode::Interrupted)))
        return ExitCode::Interrupted;
    const ExitCode first = outcomes.isEmpty() ? ExitCode::Ok : outcomes.first().code;
    const bool isAlike = std::all_of(outcomes.begin(), outcomes.end(), hasCode(first));
    return isAlike ? first : ExitCode::SomeFailed;
}

} // namespace zyslicer
