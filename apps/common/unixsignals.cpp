// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// SIGINT, SIGTERM and their like as Qt signals.

#include "unixsignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace zyapp
{

namespace
{

bool isIgnoredHangup(int signalNumber)
{
    struct sigaction action {
    };
    return signalNumber == SIGHUP && sigaction(SIGHUP, nullptr, &action) == 0
        && action.sa_handler == SIG_IGN;
}

} // namespace

UnixSignals::UnixSignals(std::initializer_list<int> signalNumbers, QObject *parent)
    : QObject(parent)
{
    sigset_t wanted;
    sigemptyset(&wanted);
    for (const int signalNumber : signalNumbers) {
        if (!isIgnoredHangup(signalNumber))
            sigaddset(&wanted, signalNumber);
    }
    pthread_sigmask(SIG_BLOCK, &wanted, nullptr);
    m_descriptor = signalfd(-1, &wanted, SFD_NONBLOCK | SFD_CLOEXEC);
    auto *notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] { read(); });
}

UnixSignals::~UnixSignals()
{
    close(m_descriptor);
}

void UnixSignals::read()
{
    signalfd_siginfo info;
    while (::read(m_descriptor, &info, sizeof info) == ssize_t(sizeof info))
        Q_EMIT received(int(info.ssi_signo));
}

} // namespace zyapp
