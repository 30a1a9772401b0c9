// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One step of a job on one printer: a transfer, a command, following the status.

#ifndef STEP_H
#define STEP_H

#include "event.h"
#include "exchange.h"
#include "outcome.h"
#include "request.h"
#include "savedprinters.h"

#include <QObject>

namespace zyslicer
{

/// What the steps of one job share.
struct JobContext {
    JobContext(const Request &wanted, const zysession::Printer &where)
        : request(wanted), printer(where), link(where.url, wanted.limits)
    {
        link.setTlsTrust(trust);
    }

    const Request request;
    const zysession::Printer printer;
    const ZyTlsTrust trust = printer.trust();
    zysession::PrinterLink link; ///< for commands
    QString storedName; ///< the name under which the printer stored the last file sent
};

class Step : public QObject
{
    Q_OBJECT

public:
    explicit Step(JobContext &context) : m_context(context) { }

    /// Runs until ended(), which comes exactly once.
    virtual void start() = 0;
    /// The user wants it to end.
    virtual void interrupt();

Q_SIGNALS:
    void reported(const zyslicer::Event &event);
    void ended(const zyslicer::Outcome &outcome);

protected:
    JobContext &context() const { return m_context; }
    /// The printer for people.
    QString printer() const { return m_context.printer.description(); }
    /// The token given for all printers, or else the one that is saved for this one.
    QString token() const;

    void end(const Outcome &outcome = {});
    bool hasEnded() const { return m_hasEnded; }
    void endInterrupted(const QString &consequence);
    void endUnconnected();
    /// @p detail in the system's words; @p fingerprint of a certificate that was refused.
    void endUnconnected(ZySendResult::ConnectionFault fault, const QString &detail,
                        const QString &fingerprint);
    /// @p question for people.
    void endUnanswered(const QString &question, const QString &reason);
    void endTokenRejected();

private:
    JobContext &m_context;
    bool m_hasEnded = false;
};

/// "connection lost", "no answer within 30 s"
QString unansweredText(const zysession::Exchange::Result &result);

} // namespace zyslicer

#endif // STEP_H
