// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client's socket, held so that it outlives its own emissions.

#include "heldsocket.h"

namespace zyws
{

HeldSocket::Emission::Emission(const HeldSocket &held) : m_state(held.m_state)
{
    ++m_state->emissions;
}

HeldSocket::Emission::~Emission()
{
    if (--m_state->emissions == 0 && m_state->isReleased)
        m_state->socket->deleteLater();
}

HeldSocket::HeldSocket()
    : m_state(
        std::make_shared<State>(State{new QWebSocket(QString(), QWebSocketProtocol::Version13)}))
{
}

HeldSocket::~HeldSocket()
{
    m_state->isReleased = true;
    if (m_state->emissions == 0)
        delete m_state->socket;
}

} // namespace zyws
