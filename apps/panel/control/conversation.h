// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One connection and the commands on it, which do not wait for each other.

#ifndef PANEL_CONVERSATION_H
#define PANEL_CONVERSATION_H

#include "printercontrol.h"

#include <exchange.h>

namespace zypanel
{

struct PrinterControl::Conversation {
    Conversation(const zysession::Printer &printer, const zysession::TimeLimits &limits)
        : link(printer.url, limits)
    {
        link.setTlsTrust(printer.trust());
    }

    void setToken(const QString &token)
    {
        for (zysession::Exchange *each : {&status, &version, &print, &halt, &parameters})
            each->setToken(token);
    }

    zysession::PrinterLink link;
    zysession::Exchange status{link};
    zysession::Exchange version{link};
    zysession::Exchange print{link};
    zysession::Exchange halt{link}; ///< a pause or a stop
    zysession::Exchange parameters{link};
};

} // namespace zypanel

#endif // PANEL_CONVERSATION_H
