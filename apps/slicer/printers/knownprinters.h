// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers as the command line names them, and the command "printers".

#ifndef KNOWNPRINTERS_H
#define KNOWNPRINTERS_H

#include "outcome.h"
#include "request.h"
#include "savedprinters.h"

namespace zyslicer
{

/// Turns the request's saved names and URLs into @p printers; none means the only saved printer.
Outcome findPrinters(const Request &request, QVector<zysession::Printer> &printers);

/// Lists, adds or removes saved printers.
Outcome runPrintersCommand(const Request &request);

} // namespace zyslicer

#endif // KNOWNPRINTERS_H
