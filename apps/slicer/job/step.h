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

#include <functional>
#include <memory>

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
    bool isWaitingInVain = false; ///< what ended the last step stays as it is
    zysession::PrinterStatus statusBefore; ///< a print: what the printer was doing
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
    void endUnconnected(ZySendResult::ConnectionFault fault, const QString &detail = {},
                        const QString &fingerprint = {});
    /// @p question for people; @p isSilent where the connection is open.
    void endUnanswered(const QString &question, const QString &reason, bool isSilent);
    void endTokenRejected();

    using Finding = std::function<void(const zysession::PrinterStatus &status)>;
    /// Asks what the printer is doing, and calls @p then once: with a status of the state Unknown
    /// where it does not say so soon. Opens the link where it is not.
    void findOut(const Finding &then);
    /// Ends as busy if the printer is found to have a print, else with @p otherwise.
    void endBusyOr(const Outcome &otherwise, const QString &value);

private:
    void onFound(const zysession::PrinterStatus &status);

    JobContext &m_context;
    std::unique_ptr<zysession::Exchange> m_question;
    Finding m_finding;
    bool m_hasEnded = false;
};

/// "connection lost", "no answer within 30 s"
QString unansweredText(const zysession::Exchange::Result &result);

} // namespace zyslicer

#endif // STEP_H
