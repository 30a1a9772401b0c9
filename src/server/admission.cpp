// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whom the server lets in: how many, from which web pages, over TLS, and how long they may take.

#include "admission.h"

#include "lingeringclose.h"
#include "linkoptions.h"
#include "messagelimits.h"
#include "report.h"

#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>
#include <QWebSocket>
#include <QWebSocketCorsAuthenticator>
#include <QWebSocketServer>

#include <algorithm>

namespace zyws
{

namespace
{

/// Far more than the header of a handshake.
constexpr qint64 handshakeBuffer = Q_INT64_C(16) * 1024;
/// More than the header of a frame.
constexpr qint64 frameHeader = 64;
constexpr int acceptPause = 500; // ms

} // namespace

bool Admission::isWanted(const ZyServerOptions &options)
{
    return options.maxConnections() > 0 || options.checksOrigin() || options.handshakeTimeout() > 0
        || options.silence() > 0 || options.usesTls();
}

Admission::Admission(QWebSocketServer *upgrader, const ZyServerOptions &options)
    : QTcpServer(upgrader), m_upgrader(upgrader), m_options(options)
{
    if (m_options.checksOrigin())
        connect(m_upgrader, &QWebSocketServer::originAuthenticationRequired, this,
                [this](QWebSocketCorsAuthenticator *request) {
                    request->setAllowed(isOriginAllowed(request->origin()));
                });
    // Qt stops accepting when the process is out of descriptors; some will be free again.
    connect(this, &QTcpServer::acceptError, this,
            [this] { QTimer::singleShot(acceptPause, this, [this] { resumeAccepting(); }); });
}

bool Admission::isOriginAllowed(const QString &origin) const
{
    if (origin.isEmpty() || m_options.allowedOrigins().contains(origin))
        return true;
    report(m_options, ZyServerOptions::Failure::Refused,
           QStringLiteral("a connection from the web page of ") + origin);
    return false;
}

void Admission::incomingConnection(qintptr descriptor)
{
    QTcpSocket *socket = m_options.usesTls() ? new QSslSocket(this) : new QTcpSocket(this);
    if (!socket->setSocketDescriptor(descriptor)) {
        delete socket;
        return;
    }
    setLinkOptions(*socket);
    socket->setReadBufferSize(handshakeBuffer);
    beginHandshake(socket);
    if (m_options.usesTls())
        encrypt(socket);
    else
        m_upgrader->handleConnection(socket);
}

void Admission::beginHandshake(QTcpSocket *socket)
{
    // The oldest goes, not the newest: a slicer is done in a moment, whoever only blocks is not.
    if (m_options.maxConnections() > 0 && m_shakingHands.size() >= m_options.maxConnections()) {
        QTcpSocket *oldest = m_shakingHands.takeFirst();
        oldest->abort();
        oldest->deleteLater();
    }
    m_shakingHands.append(socket);
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        if (endHandshake(socket))
            socket->deleteLater();
    });
    if (m_options.handshakeTimeout() > 0)
        QTimer::singleShot(m_options.handshakeTimeout(), socket, [this, socket] {
            if (m_shakingHands.contains(socket))
                socket->abort();
        });
}

void Admission::encrypt(QTcpSocket *socket)
{
    auto *encrypted = static_cast<QSslSocket *>(socket);
    encrypted->setSslConfiguration(m_options.tls());
    connect(encrypted, &QSslSocket::encrypted, this,
            [this, encrypted] { m_upgrader->handleConnection(encrypted); });
    encrypted->startServerEncryption();
}

/// False when the handshake of @p socket has ended before.
bool Admission::endHandshake(const QTcpSocket *socket)
{
    const auto found = std::find(m_shakingHands.begin(), m_shakingHands.end(), socket);
    if (found == m_shakingHands.end())
        return false;
    m_shakingHands.erase(found);
    return true;
}

QTcpSocket *Admission::tcpSocketOf(const QWebSocket *socket) const
{
    // QWebSocket does not give away its TCP socket, but says with whom it speaks.
    const auto found
        = std::find_if(m_shakingHands.begin(), m_shakingHands.end(), [socket](QTcpSocket *tcp) {
              return tcp->peerPort() == socket->peerPort()
                  && tcp->peerAddress() == socket->peerAddress();
          });
    return found == m_shakingHands.end() ? nullptr : *found;
}

QTcpSocket *Admission::admit(QWebSocket *socket, qsizetype standing)
{
    QTcpSocket *tcp = tcpSocketOf(socket);
    endHandshake(tcp);
    if (!tcp) { // has just ended
        socket->deleteLater();
        return nullptr;
    }
    lingerOnClose(socket, tcp);
    if (m_options.maxConnections() > 0 && standing >= m_options.maxConnections()) {
        report(m_options, ZyServerOptions::Failure::Refused,
               QStringLiteral("a connection: there are %1").arg(standing));
        socket->close(QWebSocketProtocol::CloseCodePolicyViolated);
        socket->deleteLater();
        return nullptr;
    }
    // A frame has to fit whole; what a peer sends beyond it waits in the system's own buffers.
    const qint64 largest = largestMessage(m_options);
    tcp->setReadBufferSize(largest > 0 ? largest + frameHeader : 0);
    return tcp;
}

} // namespace zyws
