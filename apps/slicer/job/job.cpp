// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A job on one printer: its steps, one after the other, in the thread it was moved to.

#include "job.h"

#include <utility>

Job::Job(const Printer &printer, const Limits &limits, std::vector<StepMaker> steps)
    : m_printer(printer), m_limits(limits), m_steps(std::move(steps))
{
}

Job::~Job()
{
    delete m_step;
}

void Job::start()
{
    m_link = std::make_unique<PrinterLink>(m_printer, m_limits);
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
    m_step = m_steps[m_nextStep++](*m_link, m_notes).release();
    connect(m_step, &Step::reported, this, &Job::reported);
    connect(m_step, &Step::ended, this, &Job::onStepEnded);
    m_step->start();
}

void Job::onStepEnded(const Outcome &outcome)
{
    // The step is still on the stack, and it must not hear of the next one's connection.
    m_step->disconnect();
    m_link->disconnect(m_step);
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
    if (m_link)
        m_link->drop();
    Q_EMIT ended(outcome);
}
