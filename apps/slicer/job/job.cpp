// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job on one printer: its steps, one after the other.

#include "job.h"

#include "commandstep.h"
#include "followstep.h"
#include "sendstep.h"

namespace zyslicer
{

Job::Job(const Request &request, const zysession::Printer &printer)
    : m_context(request, printer), m_steps(stepsOf(request))
{
}

Job::~Job() = default;

std::vector<Job::StepMaker> Job::stepsOf(const Request &request)
{
    using Command = Request::Command;
    const auto command = [](Command which) {
        return
            [which](JobContext &context) { return std::make_unique<CommandStep>(context, which); };
    };
    const auto follow = [](FollowStep::Mode mode) {
        return [mode](JobContext &context) { return std::make_unique<FollowStep>(context, mode); };
    };
    if (request.command == Command::Status)
        return {follow(request.isWatching ? FollowStep::Mode::UntilIdle : FollowStep::Mode::Once)};
    std::vector<StepMaker> steps;
    for (const ModelFile &file : request.files)
        steps.emplace_back(
            [file](JobContext &context) { return std::make_unique<SendStep>(context, file); });
    if (request.command != Command::Send)
        steps.emplace_back(command(request.command));
    else if (request.isPrinting)
        steps.emplace_back(command(Command::Print));
    if (request.isWatching)
        steps.emplace_back(follow(FollowStep::Mode::UntilDone));
    return steps;
}

void Job::start()
{
    startNextStep();
}

void Job::startNextStep()
{
    if (m_hasEnded)
        return;
    if (m_nextStep == m_steps.size()) {
        end({});
        return;
    }
    m_step = m_steps[m_nextStep++](m_context);
    connect(m_step.get(), &Step::reported, this, &Job::reported);
    connect(m_step.get(), &Step::ended, this, &Job::onStepEnded);
    m_step->start();
}

void Job::onStepEnded(const Outcome &outcome)
{
    // It is still on the stack; its part of the job's connection is over.
    m_step.release()->deleteLater();
    if (outcome.isOk())
        QMetaObject::invokeMethod(this, &Job::startNextStep, Qt::QueuedConnection);
    else
        end(outcome);
}

void Job::interrupt()
{
    if (m_step)
        m_step->interrupt();
    else if (!m_hasEnded)
        end({ExitCode::Interrupted, QStringLiteral("interrupted"), m_context.printer.description(),
             QStringLiteral("nothing was under way")});
}

void Job::end(const Outcome &outcome)
{
    m_hasEnded = true;
    m_context.link.close();
    Q_EMIT ended(outcome);
}

} // namespace zyslicer
