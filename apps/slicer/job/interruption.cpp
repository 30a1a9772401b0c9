// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Ctrl-C and SIGTERM: the first is a signal of Qt's, the second ends the program at once.

#include "interruption.h"

#include "outcome.h"

#include <QSocketNotifier>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace zyslicer
{

namespace
{

int pipeEnds[2] = {-1, -1};
std::atomic_int signalCount{0};

// Only what POSIX allows inside a signal handler.
void onSignal(int)
{
    if (signalCount.fetch_add(1) > 0) {
        constexpr char text[] = "\nzyslicer: interrupted twice: left without waiting for the "
                                "printer; what it still holds is resumed when sent again\n";
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, sizeof text - 1);
        _exit(static_cast<int>(ExitCode::Interrupted));
    }
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], "i", 1);
}

void handle(int signalNumber)
{
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signalNumber, &action, nullptr);
}

} // namespace

Interruption::Interruption(QObject *parent) : QObject(parent)
{
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // without a pipe the signals keep ending the program at once
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier->setEnabled(false);
        Q_EMIT interrupted();
    });
    handle(SIGINT);
    handle(SIGTERM);
}

Interruption::~Interruption()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    delete m_notifier;
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

} // namespace zyslicer
