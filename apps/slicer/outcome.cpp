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
        {ExitCode::NoConnection, "no connection to the printer, or no answer from it"},
        {ExitCode::Busy, "refused: the printer is busy receiving, checking or printing"},
        {ExitCode::Refused, "refused by the printer for another reason"},
        {ExitCode::TokenRejected, "the printer rejected the token"},
        {ExitCode::LocalFile,
         "local file missing, unreadable, empty or not sendable by its name;\n"
         "       or the settings or standard output not readable or writable"},
        {ExitCode::CheckFailed, "the printer's check of the model failed"},
        {ExitCode::PrintFailed, "the print failed or was stopped"},
        {ExitCode::SomeFailed, "some of several printers failed"},
        {ExitCode::GivenUp, "transfer given up: stalled or dropped after all retries"},
        {ExitCode::Interrupted, "interrupted"},
    };
    return meanings;
}

QString Outcome::text() const
{
    return what + QStringLiteral(": ") + value + QStringLiteral("; ") + advice;
}

ExitCode combinedExitCode(const QVector<Outcome> &outcomes)
{
    if (outcomes.size() == 1)
        return outcomes.first().code;
    const auto isInterrupted
        = [](const Outcome &outcome) { return outcome.code == ExitCode::Interrupted; };
    if (std::any_of(outcomes.begin(), outcomes.end(), isInterrupted))
        return ExitCode::Interrupted;
    const bool isOk = std::all_of(outcomes.begin(), outcomes.end(),
                                  [](const Outcome &outcome) { return outcome.isOk(); });
    return isOk ? ExitCode::Ok : ExitCode::SomeFailed;
}

} // namespace zyslicer
