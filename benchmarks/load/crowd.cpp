// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Many connections to one server, and what they do together.

#include "crowd.h"

#include <QElapsedTimer>

#include <array>
#include <stdexcept>
#include <sys/epoll.h>
#include <unistd.h>

namespace zybench
{

namespace
{

constexpr std::size_t connectingAtOnce = 16;

double secondsOf(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

} // namespace

Crowd::Crowd(quint16 port, int count)
    : m_request(maskedTextFrame(
        QByteArrayLiteral("{\"cmd\":\"GET_PRINT_STATUS\",\"token\":\"0123456789abcdef\"}")))
{
    const auto all = static_cast<std::size_t>(count);
    std::size_t upgraded = 0;
    QElapsedTimer timer;
    timer.start();
    while (upgraded < all) {
        if (m_peers.size() < all && m_peers.size() - upgraded < connectingAtOnce)
            m_peers.push_back(std::make_unique<RawPeer>(port));
        else
            m_peers[upgraded++]->awaitUpgrade();
    }
    m_connectSeconds = secondsOf(timer);
}

std::vector<double> Crowd::askInTurn(int requests)
{
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(requests));
    QElapsedTimer timer;
    for (std::size_t i = 0; times.size() < static_cast<std::size_t>(requests); ++i) {
        RawPeer &peer = *m_peers[i % m_peers.size()];
        timer.start();
        peer.send(m_request);
        const QByteArray answer = peer.receive();
        times.push_back(secondsOf(timer));
        check(answer);
    }
    return times;
}

double Crowd::askTogether(int requests)
{
    const int poll = epoll_create1(EPOLL_CLOEXEC);
    for (const auto &peer : m_peers) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.ptr = peer.get();
        epoll_ctl(poll, EPOLL_CTL_ADD, peer->descriptor(), &event);
    }
    QElapsedTimer timer;
    timer.start();
    int asked = 0;
    for (const auto &peer : m_peers) {
        peer->send(m_request);
        ++asked;
    }
    std::array<epoll_event, 64> events{};
    for (int answered = 0; answered < requests;) {
        const int ready = epoll_wait(poll, events.data(), static_cast<int>(events.size()), -1);
        for (int i = 0; i < ready; ++i, ++answered) {
            auto *peer = static_cast<RawPeer *>(events[static_cast<std::size_t>(i)].data.ptr);
            check(peer->receive());
            if (asked < requests) {
                peer->send(m_request);
                ++asked;
            }
        }
    }
    const double seconds = secondsOf(timer);
    ::close(poll);
    return seconds;
}

void Crowd::check(const QByteArray &answer)
{
    if (m_answer.isEmpty())
        m_answer = answer;
    else if (answer != m_answer)
        throw std::runtime_error("two different answers");
}

} // namespace zybench
