// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Standard output: plain writing and its failure, and what kind of terminal it is.

#ifndef STANDARDOUTPUT_H
#define STANDARDOUTPUT_H

#include "outcome.h"

#include <QSize>
#include <QString>

namespace zyslicer
{

/// Call it before anything is opened: gives the numbers of standard streams that are closed to
/// /dev/null, else the next socket would get one, and the output with it.
void reserveStreams();
/// Standard output is a terminal on which lines can be drawn over.
bool isTerminal();
/// The terminal's, in characters.
QSize terminalSize();
/// Writes at once, and nothing any more after a failure. A closed pipe ends the program by SIGPIPE.
void writeOut(const QString &text);
/// Ok as long as all that was written, by whatever means, has reached standard output.
Outcome writingOutcome();

} // namespace zyslicer

#endif // STANDARDOUTPUT_H
