// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job on one printer: its steps, one after the other.

#ifndef JOB_H
#define JOB_H

#include "step.h"

#include <functional>
#include <memory>
#include <vector>

namespace zyslicer
{

/// What a request asks of one printer.
class Job : public QObject
{
    Q_OBJECT

public:
    Job(const Request &request, const zysession::Printer &printer);
    ~Job() override;

    /// Runs the steps until the first that fails; where several files are sent, one that fails
    /// leaves the others to be sent. ended() comes exactly once.
    void start();
    void interrupt();

Q_SIGNALS:
    void reported(const zyslicer::Event &event);
    void ended(const zyslicer::Outcomes &outcomes);

private:
    using StepMaker = std::function<std::unique_ptr<Step>(JobContext &)>;

    static std::vector<StepMaker> stepsOf(const Request &request);
    void startNextStep();
    void onStepEnded(const Outcome &outcome);
    void waitFor(const Outcome &outcome);
    void endFile(const Outcome &outcome);
    void endInterrupted();
    void end(const Outcome &outcome);
    bool hasSeveralFiles() const { return m_context.request.files.size() > 1; }

    JobContext m_context;
    std::vector<StepMaker> m_steps;
    std::size_t m_nextStep = 0;
    std::unique_ptr<Step> m_step;
    Outcomes m_outcomes; ///< of the files so far, where there are several
    bool m_isInterrupted = false;
    bool m_hasEnded = false;
};

} // namespace zyslicer

#endif // JOB_H
