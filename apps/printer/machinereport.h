// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the machine does, in words.

#ifndef MACHINEREPORT_H
#define MACHINEREPORT_H

#include "machine.h"

namespace zyprinter
{

class PrinterLog;

/// One word or two, for example "printing".
QString stateTitle(Machine::State state);

/// "1:02:03"
QString clockTime(double seconds);

/// Writes each step of the machine, and every tenth of its layers, to @p log from now on.
void reportTo(PrinterLog &log, const Machine &machine);

} // namespace zyprinter

#endif // MACHINEREPORT_H
