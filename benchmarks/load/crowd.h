// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Many connections to one server, and what they do together.

#ifndef CROWD_H
#define CROWD_H

#include "rawpeer.h"

#include <memory>
#include <vector>

namespace zybench
{

class Crowd
{
public:
    /// Connects @p count peers, a few of them under way at any time.
    Crowd(quint16 port, int count);

    /// How long it took to connect them, in seconds.
    double connectSeconds() const { return m_connectSeconds; }

    /// GET_PRINT_STATUS from each peer in turn, one at a time: the times of @p requests answers,
    /// in seconds.
    std::vector<double> askInTurn(int requests);

    /// GET_PRINT_STATUS from all peers, each with one request under way: how long @p requests
    /// answers take, in seconds.
    double askTogether(int requests);

    /// The answer, which has been the same each time.
    const QByteArray &answer() const { return m_answer; }

private:
    void check(const QByteArray &answer);

    std::vector<std::unique_ptr<RawPeer>> m_peers;
    double m_connectSeconds = 0;
    QByteArray m_request;
    QByteArray m_answer;
};

} // namespace zybench

#endif // CROWD_H
