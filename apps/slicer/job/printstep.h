// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Starts the print of a file that is on the printer.

#ifndef PRINTSTEP_H
#define PRINTSTEP_H

#include "exchange.h"
#include "step.h"

class PrintStep : public Step
{
    Q_OBJECT

public:
    /// @p fileName as the printer knows it; empty for the file that the job has just sent.
    PrintStep(PrinterLink &link, const JobNotes &notes, const QString &fileName,
              const QString &token);

    void start() override;

private:
    void onOpened();
    void onAnswered(const QJsonObject &answer);
    void report(Event::Kind kind);
    void endRefused(ExitCode code, const QString &what, const QString &advice);

    const JobNotes &m_notes;
    QString m_fileName;
    QString m_token;
    Exchange m_exchange;
    bool m_isChecking = false;
};

#endif // PRINTSTEP_H
