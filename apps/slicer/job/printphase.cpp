// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the printer's status words mean for somebody who waits for a print to end.

#include "printphase.h"

#include "wirewords.h"

namespace
{

struct StatusWord {
    QLatin1String word;
    PrintPhase phase;
    const char *text;
};

const StatusWord &statusWord(const QString &word)
{
    // Deliberate spelling of PRINT_STOPING: the printer's.
    static const StatusWord words[] = {
        {QLatin1String("PRINT_GENERAL"), PrintPhase::Idle, "idle"},
        {QLatin1String("PRINT_PROCESSING"), PrintPhase::Running, "printing"},
        {QLatin1String("PRINT_COMPLETE"), PrintPhase::Complete, "complete"},
        {QLatin1String("PRINT_FAIL"), PrintPhase::Failed, "failed"},
        {QLatin1String("PRINT_END"), PrintPhase::Stopped, "ended"},
        {QLatin1String("PRINT_STOP"), PrintPhase::Running, "paused"},
        {QLatin1String("PRINT_STOPING"), PrintPhase::Running, "stopping"},
        {QLatin1String("PRINT_COMPLETING"), PrintPhase::Running, "completing"},
        {wire::tokenError, PrintPhase::TokenRejected, "token rejected"},
    };
    static const StatusWord unknown{QLatin1String(), PrintPhase::Unknown, "unknown"};
    for (const StatusWord &entry : words) {
        if (entry.word == word)
            return entry;
    }
    return unknown;
}

} // namespace

PrintPhase printPhase(const QString &word)
{
    return statusWord(word).phase;
}

QString printPhaseText(const QString &word)
{
    return QLatin1String(statusWord(word).text);
}
