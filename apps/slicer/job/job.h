// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job on one printer: its steps, one after the other, in the thread it was moved to.

#ifndef JOB_H
#define JOB_H

#include "printerlink.h"
#include "step.h"

#include <functional>
#include <memory>
#include <vector>

using StepMaker = std::function<std::unique_ptr<Step>(PrinterLink &, JobNotes &)>;

class Job : public QObject
{
    Q_OBJECT

public:
    Job(const Printer &printer, const Limits &limits, std::vector<StepMaker> steps);
    ~Job() override;

    /// Makes the connection and runs the steps until the first that fails; call it in the job's
    /// own thread. ended() comes exactly once.
    void start();
    void interrupt();

Q_SIGNALS:
    void reported(const Event &event);
    void ended(const Outcome &outcome);

private:
    void startNextStep();
    void onStepEnded(const Outcome &outcome);
    void end(const Outcome &outcome);

    Printer m_printer;
    Limits m_limits;
    std::vector<StepMaker> m_steps;
    std::size_t m_nextStep = 0;
    std::unique_ptr<PrinterLink> m_link;
    Step *m_step = nullptr;
    JobNotes m_notes;
    bool m_hasEnded = false;
};

#endif // JOB_H
