// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One step of a job on one printer: a transfer, a print start, a command, following the status.

#ifndef STEP_H
#define STEP_H

#include "event.h"
#include "outcome.h"

#include <QObject>

class PrinterLink;

/// What the steps of one job tell each other.
struct JobNotes {
    QString storedName; ///< the name under which the printer stored the last file sent
};

class Step : public QObject
{
    Q_OBJECT

public:
    explicit Step(PrinterLink &link);

    /// Runs until ended(), which comes exactly once.
    virtual void start() = 0;
    /// The user wants it to end.
    virtual void interrupt();

Q_SIGNALS:
    void reported(const Event &event);
    void ended(const Outcome &outcome);

protected:
    PrinterLink &link() const { return m_link; }
    void end(const Outcome &outcome = {});
    bool hasEnded() const { return m_hasEnded; }
    void endInterrupted(const QString &consequence);
    void endUnconnected();
    void endUnanswered(const QString &question, const QString &reason);
    void endTokenRejected();

private:
    PrinterLink &m_link;
    bool m_hasEnded = false;
};

#endif // STEP_H
