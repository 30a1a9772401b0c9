// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What all steps have in common: ending once, and the failures that any of them can meet.

#include "step.h"

#include "printerlink.h"

Step::Step(PrinterLink &link) : m_link(link) { }

void Step::interrupt()
{
    endInterrupted(m_link.isOpen()
                       ? QStringLiteral("the printer may still do what it was asked; look with "
                                        "'zyslicer status'")
                       : QStringLiteral("the printer has been asked nothing"));
}

void Step::end(const Outcome &outcome)
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    Q_EMIT ended(outcome);
}

void Step::endInterrupted(const QString &consequence)
{
    end({ExitCode::Interrupted, QStringLiteral("interrupted"), m_link.printer().description(),
         consequence});
}

void Step::endUnconnected()
{
    end({ExitCode::NoConnection, QStringLiteral("no connection"), m_link.printer().description(),
         QStringLiteral("check that the printer is on, in this network and at this address")});
}

void Step::endUnanswered(const QString &question, const QString &reason)
{
    end({ExitCode::NoConnection, QStringLiteral("%1 not answered (%2)").arg(question, reason),
         m_link.printer().description(),
         QStringLiteral("look at the printer's state with 'zyslicer status' and try again")});
}

void Step::endTokenRejected()
{
    end({ExitCode::TokenRejected, QStringLiteral("token rejected"), m_link.printer().description(),
         QStringLiteral("give the printer's token with --token or ZYSLICER_TOKEN")});
}
