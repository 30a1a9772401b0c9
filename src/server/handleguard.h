// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Tells a command handler whether it may go on after a call into the host.

#ifndef HANDLEGUARD_H
#define HANDLEGUARD_H

#include "zywebhandle.h"

#include <QPointer>

/**
 * Made before a host's slot runs and asked after it: the slot may have spun the event loop, in
 * which the peer left, or deleted the server and the handle with it.
 */
class ZyWebHandle::HandleGuard
{
public:
    explicit HandleGuard(const ZyWebHandle *handle) : m_handle(handle) { }

    /// False when the peer or the server is gone: the handler must return at once, without a reply.
    bool isServing() const { return m_handle && !m_handle->m_isAbandoned; }

private:
    QPointer<const ZyWebHandle> m_handle;
};

#endif // HANDLEGUARD_H
