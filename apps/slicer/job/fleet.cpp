// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Runs one job per printer, each in a thread of its own.

#include "fleet.h"

#include <QThread>

namespace zyslicer
{

Fleet::Fleet(QObject *parent) : QObject(parent)
{
    qRegisterMetaType<Event>("zyslicer::Event");
    qRegisterMetaType<Outcome>("zyslicer::Outcome");
}

Fleet::~Fleet()
{
    for (const Member &member : qAsConst(m_members)) {
        member.thread->quit();
        member.thread->wait();
    }
}

void Fleet::add(const Request &request, const zysession::Printer &printer)
{
    const int index = m_members.size();
    auto *thread = new QThread(this);
    auto *job = new Job(request, printer);
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

} // namespace zyslicer
