// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job on one printer: its steps, one after the other.

#include "job.h"

#include "commandstep.h"
#include "followstep.h"
#include "sendstep.h"

#include <QTimer>

namespace zyslicer
{

namespace
{

/// It would meet the next file as well.
bool isAboutThePrinter(const Outcome &outcome)
{
    return outcome.code == ExitCode::NoConnection || outcome.code == ExitCode::TokenRejected
        || outcome.code == ExitCode::Interrupted;
}

bool maySoonBeOtherwise(const Outcome &outcome)
{
    return outcome.code == ExitCode::Busy || outcome.code == ExitCode::NoConnection;
}

} // namespace

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
    if (m_isInterrupted) {
        endInterrupted();
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
    if (m_context.request.isWaiting && !m_isInterrupted && !m_context.isWaitingInVain
        && maySoonBeOtherwise(outcome)) {
        waitFor(outcome);
        return;
    }
    if (hasSeveralFiles())
        endFile(outcome);
    else if (!outcome.isOk())
        end(outcome);
    QMetaObject::invokeMethod(this, &Job::startNextStep, Qt::QueuedConnection);
}

/// The step is made anew after a while.
void Job::waitFor(const Outcome &outcome)
{
    --m_nextStep;
    Event event;
    event.kind = Event::Kind::Waiting;
    event.text = outcome.what;
    event.delay = m_context.request.pollInterval;
    Q_EMIT reported(event);
    QTimer::singleShot(event.delay, this, &Job::startNextStep);
}

/// One of several; those that are not tried any more share its end.
void Job::endFile(const Outcome &outcome)
{
    const QVector<ModelFile> &files = m_context.request.files;
    do {
        Event event;
        event.kind = Event::Kind::FileEnded;
        event.file = files[m_outcomes.size()].name;
        event.outcome = outcome;
        event.outcome.file = event.file;
        m_outcomes.append(event.outcome);
        Q_EMIT reported(event);
    } while (isAboutThePrinter(outcome) && m_outcomes.size() < files.size());
    m_nextStep = static_cast<std::size_t>(m_outcomes.size());
}

void Job::interrupt()
{
    m_isInterrupted = true;
    if (m_step)
        m_step->interrupt();
    else if (!m_hasEnded)
        endInterrupted();
}

/// Between two steps.
void Job::endInterrupted()
{
    const Outcome outcome{ExitCode::Interrupted, QStringLiteral("interrupted"),
                          m_context.printer.description(), QStringLiteral("nothing was under way")};
    if (hasSeveralFiles()) {
        endFile(outcome);
        end({});
    } else {
        end(outcome);
    }
}

void Job::end(const Outcome &outcome)
{
    m_hasEnded = true;
    m_context.link.close();
    if (!hasSeveralFiles()) {
        m_outcomes = {outcome};
        if (!m_context.request.files.isEmpty())
            m_outcomes.first().file = m_context.request.files.first().name;
    }
    Q_EMIT ended(m_outcomes);
}

} // namespace zyslicer
