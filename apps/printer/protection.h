// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the command line to the server's protection, and from there to the event log.

#ifndef PROTECTION_H
#define PROTECTION_H

#include <zyserveroptions.h>

namespace zyprinter
{

class PrinterLog;
class ModelStore;
struct PrinterOptions;

/// What the server is to be made with, but TLS. @p store and @p log must outlive the server.
ZyServerOptions serverOptions(const PrinterOptions &options, ModelStore &store, PrinterLog &log);

} // namespace zyprinter

#endif // PROTECTION_H
