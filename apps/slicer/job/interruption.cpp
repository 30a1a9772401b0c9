// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Ctrl-C and SIGTERM: the first is a signal of Qt's, the second ends the program at once.

#include "interruption.h"

#include "outcome.h"

#include <QSocketNotifier>

#include <atomic>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace zyslicer
{

namespace
{

int pipeEnds[2] = {-1, -1};
std::atomic<long> firstSignal{0}; // ms; 0: none yet
// timeout(1) signals the program and its process group: that is one interruption, not two.
constexpr long oneInterruption = 50; // ms

long now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000 + time.tv_nsec / 1000000;
}

// Only what POSIX allows inside a signal handler.
void onSignal(int)
{
    long first = 0;
    if (!firstSignal.compare_exchange_strong(first, now())) {
        if (now() - first < oneInterruption)
            return;
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
