// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Runs one job per printer, all at the same time.

#include "fleet.h"

namespace zyslicer
{

Fleet::Fleet(const Request &request, const QVector<zysession::Printer> &printers)
    : m_outcomes(printers.size()), m_running(int(printers.size()))
{
    for (int index = 0; index < printers.size(); ++index) {
        m_jobs.push_back(std::make_unique<Job>(request, printers[index]));
        const Job *job = m_jobs.back().get();
        connect(job, &Job::reported, this,
                [this, index](const Event &event) { Q_EMIT reported(index, event); });
        connect(job, &Job::ended, this,
                [this, index](const Outcomes &outcomes) { onJobEnded(index, outcomes); });
    }
}

void Fleet::start()
{
    for (const auto &job : m_jobs)
        job->start();
}

void Fleet::interrupt()
{
    for (const auto &job : m_jobs)
        job->interrupt();
}

void Fleet::onJobEnded(int printer, const Outcomes &outcomes)
{
    m_outcomes[printer] = outcomes;
    Q_EMIT printerEnded(printer, outcomes);
    if (--m_running == 0)
        Q_EMIT ended();
}

} // namespace zyslicer
