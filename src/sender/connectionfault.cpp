// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Why a printer could not be reached, from what Qt says.

#include "zyfilesender.h"

#include <zysslechoclient.h>
#include <zytlstrust.h>

#include <QBuffer>

using ConnectionFault = ZySendResult::ConnectionFault;

ConnectionFault ZyFileSender::connectionFault(const ZySslEchoClient &client)
{
    if (client.socketConnectStatus() == QAbstractSocket::ConnectedState)
        return ConnectionFault::None;
    if (client.socketConnectStatus() != QAbstractSocket::UnconnectedState) {
        // Qt goes on waiting after an answer that does not open a WebSocket, a 404 for instance;
        // nothing but the text says so, which differs from that of any device without an error.
        const bool isHandshakeRefused = client.socketErrorText() != QBuffer().errorString();
        return isHandshakeRefused ? ConnectionFault::NotAWebSocket : ConnectionFault::None;
    }
    if (!client.refusedFingerprint().isEmpty())
        return client.tlsTrust().fingerprint().isEmpty() ? ConnectionFault::CertificateUntrusted
                                                         : ConnectionFault::CertificateChanged;
    switch (client.socketError()) {
    case QAbstractSocket::ConnectionRefusedError:
        return ConnectionFault::Refused;
    case QAbstractSocket::HostNotFoundError:
        return ConnectionFault::UnknownHost;
    case QAbstractSocket::SocketTimeoutError:
        return ConnectionFault::TimedOut;
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        return ConnectionFault::Tls;
    case QAbstractSocket::RemoteHostClosedError: // instead of a handshake
        return ConnectionFault::NotAWebSocket;
    default:
        return ConnectionFault::Network;
    }
}
