// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Runs one job per printer, each in a thread of its own.

#include "fleet.h"

#include <QThread>

#include <algorithm>

Fleet::Fleet(QObject *parent) : QObject(parent)
{
    qRegisterMetaType<Event>();
    qRegisterMetaType<Outcome>();
}

Fleet::~Fleet()
{
    for (const Member &member : qAsConst(m_members)) {
        member.thread->quit();
        member.thread->wait();
    }
}

void Fleet::add(const Printer &printer, const Limits &limits, std::vector<StepMaker> steps)
{
    const int index = m_members.size();
    auto *thread = new QThread(this);
    auto *job = new Job(printer, limits, std::move(steps));
    job->moveToThread(thread);
    connect(thread, &QThread::started, job, &Job::start);
    connect(thread, &QThread::finished, job, &QObject::deleteLater);
    connect(job, &Job::reported, this,
            [this, index](const Event &event) { Q_EMIT reported(index, event); });
    connect(job, &Job::ended, this,
            [this, index](const Outcome &outcome) { onJobEnded(index, outcome); });
    m_members.append({thread, job});
    m_outcomes.append(Outcome());
}

void Fleet::start()
{
    m_running = m_members.size();
    for (const Member &member : qAsConst(m_members))
        member.thread->start();
}

void Fleet::interrupt()
{
    for (const Member &member : qAsConst(m_members)) {
        if (member.job)
            QMetaObject::invokeMethod(member.job, &Job::interrupt, Qt::QueuedConnection);
    }
}

void Fleet::onJobEnded(int printer, const Outcome &outcome)
{
    m_outcomes[printer] = outcome;
    m_members[printer].job = nullptr;
    m_members[printer].thread->quit();
    Q_EMIT printerEnded(printer, outcome);
    if (--m_running == 0)
        Q_EMIT ended();
}

ExitCode combinedExitCode(const QVector<Outcome> &outcomes)
{
    if (outcomes.size() == 1)
        return outcomes.first().code;
    const auto isInterrupted
        = [](const Outcome &outcome) { return outcome.code == ExitCode::Interrupted; };
    if (std::any_of(outcomes.begin(), outcomes.end(), isInterrupted))
        return ExitCode::Interrupted;
    const bool isOk = std::all_of(outcomes.begin(), outcomes.end(),
                                  [](const Outcome &outcome) { return outcome.isOk(); });
    return isOk ? ExitCode::Ok : ExitCode::SomeFailed;
}
