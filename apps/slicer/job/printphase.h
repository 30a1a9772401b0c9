// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the printer's status words mean for somebody who waits for a print to end.

#ifndef PRINTPHASE_H
#define PRINTPHASE_H

#include <QString>

enum class PrintPhase {
    Idle,
    Running, ///< paused and ending included
    Complete,
    Failed,
    Stopped,
    TokenRejected,
    Unknown,
};

/// The phase for the reply's "printStatus".
PrintPhase printPhase(const QString &word);
/// The word for people: "printing", "complete", …
QString printPhaseText(const QString &word);

#endif // PRINTPHASE_H
