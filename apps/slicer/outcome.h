// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// How a command ended: the exit code and, for a failure, the one line that explains it.

#ifndef OUTCOME_H
#define OUTCOME_H

#include <QString>
#include <QVector>

namespace zyslicer
{

enum class ExitCode {
    Ok = 0,
    Usage = 2,
    NoConnection = 3,
    Busy = 4,
    Refused = 5,
    TokenRejected = 6,
    LocalFile = 7,
    CheckFailed = 8,
    PrintFailed = 9,
    SomeFailed = 10,
    GivenUp = 11,
    NoDiscovery = 12,
    Interrupted = 130,
};

struct ExitCodeMeaning {
    ExitCode code;
    const char *meaning;
};

/// Every exit code with its meaning, in ascending order.
const QVector<ExitCodeMeaning> &exitCodeMeanings();

struct Outcome {
    ExitCode code = ExitCode::Ok;
    QString what; ///< what went wrong
    QString value; ///< with which file, printer or value
    QString advice; ///< what to do about it
    QString file = {}; ///< the one that was sent, by its name on the printer; else empty

    bool isOk() const { return code == ExitCode::Ok; }
    /// "what: value; advice"
    QString text() const;
};

/// What became of one printer: of each of its files, or of its only file or command.
using Outcomes = QVector<Outcome>;

/// The exit code for what became of several: that of all where they agree.
ExitCode combinedExitCode(const Outcomes &outcomes);

} // namespace zyslicer

#endif // OUTCOME_H
