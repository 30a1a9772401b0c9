// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Qt's event loop for Avahi's client library.

#ifndef QTPOLL_H
#define QTPOLL_H

struct AvahiPoll;

namespace zydiscovery
{

/// What avahi_client_new() waits with: everything happens in the thread that calls it.
const AvahiPoll *qtPoll();

} // namespace zydiscovery

#endif // QTPOLL_H
