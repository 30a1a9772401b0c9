// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// From the command line to the server's protection, and from there to the event log.

#ifndef PROTECTION_H
#define PROTECTION_H

#include <zyserveroptions.h>

class EventLog;
class ModelStore;
struct Options;

/// What the server is to be made with, but TLS. @p store and @p log must outlive the server.
ZyServerOptions serverOptions(const Options &options, ModelStore &store, EventLog &log);

#endif // PROTECTION_H
