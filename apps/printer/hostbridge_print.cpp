// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge's answers about print jobs.

#include "hostbridge.h"

#include "machine.h"
#include "modelreader.h"
#include "modelstore.h"
#include "printerlog.h"

#include <QEventLoop>
#include <QTimer>

namespace zyprinter
{

void HostBridge::answerPrint(int &answer, const QString &token, bool needCheckToken)
{
    // A halted print may go on; answerCheckFile() sees to it that it is the same one.
    const bool canResume = m_machine->state() == Machine::State::Paused
        || m_machine->state() == Machine::State::Pausing;
    answer = permission("a print", token, needCheckToken, canResume || !m_machine->isBusy());
}

void HostBridge::answerCheckFile(const QString &name, int &checkState)
{
    // The protocol has no command to go on after a pause: starting the paused job again does it.
    if (name == m_machine->job() && m_machine->resume()) {
        checkState = Started;
        return;
    }
    if (!m_machine->beginCheck(name)) {
        checkState = Busy;
        return;
    }
    checkState = checkAndStart(name);
    m_machine->abandonCheck();
}

HostBridge::CheckState HostBridge::checkAndStart(const QString &name)
{
    // Stopped during a slow check, by another connection or at the end of the program: no print.
    if (!spinSlowCheck())
        return CheckFailed;
    QString fault;
    auto model = openChecked(name, fault);
    if (!model) {
        m_log->add(QStringLiteral("check of \"%1\" failed: %2").arg(name, fault));
        return CheckFailed;
    }
    return m_machine->start(std::move(model)) ? Started : CheckFailed;
}

/// Other connections are served meanwhile; the library answers them "busy". False when the print is
/// not wanted any more.
bool HostBridge::spinSlowCheck()
{
    constexpr int msPerSecond = 1000;
    if (m_policy.slowCheck <= 0)
        return true;
    QEventLoop loop;
    QTimer::singleShot(int(m_policy.slowCheck * msPerSecond), &loop, [&loop] { loop.exit(Yes); });
    connect(m_machine, &Machine::stateChanged, &loop, [&loop] { loop.exit(No); });
    // The end of the program ends this loop too, and then there is nothing to be started.
    return loop.exec() == Yes;
}

void HostBridge::answerPause(int &answer, const QString &token)
{
    const bool isPrinting = m_machine->state() == Machine::State::Printing;
    answer = permission("a pause", token, true, isPrinting);
    if (answer == Yes)
        m_machine->pause();
}

void HostBridge::answerStop(int &answer, const QString &token)
{
    answer = permission("a stop", token, true, m_machine->isBusy());
    if (answer == Yes && !m_machine->stop())
        answer = No; // the plate is on its last way up
}

} // namespace zyprinter
