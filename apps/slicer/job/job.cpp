// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job on one printer: its steps, one after the other.

#include "job.h"

#include "commandstep.h"
#include "followstep.h"
#include "transferstep.h"

namespace zyslicer
{

Job::Job(const Request &request, const zysession::Printer &printer)
    : m_request(request), m_printer(printer), m_steps(stepsOf(request))
{
}

Job::~Job()
{
    delete m_step;
}

std::vector<Job::StepMaker> Job::stepsOf(const Request &request)
{
    using Command = Request::Command;
    const auto command = [](Command which) {
        return [which](JobContext &context) { return new CommandStep(context, which); };
    };
    const auto follow = [](FollowStep::Mode mode) {
        return [mode](JobContext &context) { return new FollowStep(context, mode); };
    };
    if (request.command == Command::Status)
        return {follow(request.isWatching ? FollowStep::Mode::UntilIdle : FollowStep::Mode::Once)};
    std::vector<StepMaker> steps;
    for (const ModelFile &file : request.files)
        steps.emplace_back([file](JobContext &context) { return new TransferStep(context, file); });
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
    m_context = std::make_unique<JobContext>(m_request, m_printer);
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
    m_step = m_steps[m_nextStep++](*m_context);
    connect(m_step, &Step::reported, this, &Job::reported);
    connect(m_step, &Step::ended, this, &Job::onStepEnded);
    m_step->start();
}

void Job::onStepEnded(const Outcome &outcome)
{
    // The step is still on the stack, and it must not hear of the next one's connection.
    m_step->disconnect();
    m_context->link.disconnect(m_step);
    m_step->deleteLater();
    m_step = nullptr;
    if (!outcome.isOk())
        end(outcome);
    else
        QMetaObject::invokeMethod(this, &Job::startNextStep, Qt::QueuedConnection);
}

void Job::interrupt()
{
    if (m_step)
        m_step->interrupt();
    else if (!m_hasEnded)
        end({ExitCode::Interrupted, QStringLiteral("interrupted"), m_printer.description(),
             QStringLiteral("nothing was under way")});
}

void Job::end(const Outcome &outcome)
{
    m_hasEnded = true;
    if (m_context)
        m_context->link.close();
    Q_EMIT ended(outcome);
}

} // namespace zyslicer
