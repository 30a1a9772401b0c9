// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Base of the per-connection handle: what the server's routing knows of a connection.

#include "zywebhandle.h"

#include "zysslechoserver.h"

ZyWebHandle::ZyWebHandle(QObject *parent, QWebSocket *socket)
    : QObject(parent), m_server(qobject_cast<ZySslEchoServer *>(parent)), m_socket(socket)
{
}

ZyWebHandle::~ZyWebHandle() = default;

void ZyWebHandle::sendMessage(QJsonObject json)
{
    m_server->sendJsonMessage(json);
}
