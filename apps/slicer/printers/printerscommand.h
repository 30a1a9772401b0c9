// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command "printers": lists, adds and removes saved printers.

#ifndef PRINTERSCOMMAND_H
#define PRINTERSCOMMAND_H

#include "outcome.h"

class PrinterBook;
struct Request;

Outcome runPrintersCommand(const Request &request, PrinterBook &book);

#endif // PRINTERSCOMMAND_H
