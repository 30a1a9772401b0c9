// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A peer that speaks the protocol by hand over a real WebSocket.

#include "rawpeer.h"

#include "messagelog.h"

#include <QJsonDocument>
#include <QUrl>

namespace zytest
{

RawPeer::RawPeer(quint16 port)
{
    QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket,
                     [this](const QString &text) {
                         logMessage(Sender::Printer, Maker::Library, text);
                         m_texts.append(text);
                     });
    m_socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(port)));
    waitUntil([this] {
        return isConnected() || m_socket.error() != QAbstractSocket::UnknownSocketError;
    });
}

RawPeer::~RawPeer()
{
    // The socket's own destructor closes it, and its signals must not reach a half-destroyed peer.
    m_socket.disconnect();
}

bool RawPeer::isConnected() const
{
    return m_socket.state() == QAbstractSocket::ConnectedState;
}

void RawPeer::send(const QJsonObject &message)
{
    send(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

void RawPeer::send(const QByteArray &text)
{
    sendText(QString::fromUtf8(text));
}

void RawPeer::sendText(const QString &text)
{
    logMessage(Sender::Slicer, Maker::Test, text);
    m_socket.sendTextMessage(text);
}

void RawPeer::sendBinary(const QByteArray &payload)
{
    m_socket.sendBinaryMessage(payload);
}

void RawPeer::sendChunk(const QByteArray &chunk)
{
    sendBinary(qCompress(chunk));
}

bool RawPeer::waitForReplies(qsizetype count, int milliseconds)
{
    return waitUntil([=] { return m_texts.size() >= count; }, milliseconds);
}

QString RawPeer::takeText()
{
    return waitForReplies(1) ? m_texts.takeFirst() : QString();
}

QJsonObject RawPeer::take()
{
    return QJsonDocument::fromJson(takeText().toUtf8()).object();
}

QJsonObject RawPeer::ask(const QByteArray &request)
{
    send(request);
    return take();
}

bool RawPeer::expectNothing()
{
    send(QByteArrayLiteral(R"({"cmd":"VERSION_CHECK"})"));
    return take().keys() == QStringList{QStringLiteral("version")} && m_texts.isEmpty();
}

bool RawPeer::close()
{
    beginClose();
    return waitUntil([this] { return m_socket.state() == QAbstractSocket::UnconnectedState; });
}

} // namespace zytest
