// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What this process has used so far, and the one line of JSON in which it says so.

#ifndef PROCESSUSAGE_H
#define PROCESSUSAGE_H

#include <QJsonObject>

namespace zybench
{

/// User and system time of the whole process, in seconds.
double cpuSeconds();

/// The most memory this process ever had resident. Not getrusage()'s figure, which starts at that
/// of the process that started this one.
qint64 peakResidentKib();

/// Raises the limit of open files as far as it goes.
void allowManyFiles();

/// One line of compact JSON on standard output.
void printLine(const QJsonObject &object);

} // namespace zybench

#endif // PROCESSUSAGE_H
