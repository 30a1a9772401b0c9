// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A TCP proxy that knows where WebSocket messages begin and end, and holds them back.

#include "messagegate.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtEndian>

#include <utility>

namespace zytest
{

/// One direction of a connection: the handshake, then frame by frame.
class MessageGate::Lane : public QObject
{
public:
    Lane(MessageGate *gate, QTcpSocket *from, QTcpSocket *to, QObject *link)
        : QObject(link), m_gate(gate), m_from(from), m_to(to)
    {
        connect(from, &QTcpSocket::readyRead, this, &Lane::forward);
        connect(to, &QTcpSocket::connected, this, &Lane::forward);
        connect(to, &QTcpSocket::bytesWritten, this, &Lane::holdWhenSent);
        connect(gate, &MessageGate::released, this, &Lane::goOn);
    }

    void forward()
    {
        if (m_gate->isHeld() || m_to->state() != QAbstractSocket::ConnectedState)
            return;
        m_waiting += m_from->readAll();
        if (!m_isHandshakeOver)
            forwardHandshake();
        while (m_isHandshakeOver && !m_gate->isHeld() && forwardFrame()) { }
    }

private:
    void goOn()
    {
        m_isHoldDue = false;
        forward();
    }

    void forwardHandshake()
    {
        const auto end = m_waiting.indexOf("\r\n\r\n");
        if (end < 0)
            return;
        m_isHandshakeOver = true;
        send(int(end) + 4);
    }

    /// False when the next frame is not whole yet, or is held back.
    bool forwardFrame()
    {
        if (m_waiting.size() < 2)
            return false;
        const int opcode = m_waiting.at(0) & 0x0f;
        const bool isFinal = m_waiting.at(0) & 0x80;
        const bool isControl = opcode & 0x08;
        if (!isControl && opcode != 0 && !std::exchange(m_isInMessage, true))
            m_number = m_gate->m_messageCount++;
        if (!isControl && m_number == m_gate->m_holdBefore) {
            m_gate->hold();
            return false;
        }
        const qint64 size = frameSize();
        if (size < 0 || m_waiting.size() < size)
            return false;
        send(static_cast<int>(size));
        if (!isControl && isFinal) {
            m_isInMessage = false;
            m_isHoldDue = m_number == m_gate->m_holdAfter;
            holdWhenSent();
        }
        return !m_isHoldDue;
    }

    void holdWhenSent()
    {
        if (m_isHoldDue && m_to->bytesToWrite() == 0 && !m_gate->isHeld())
            m_gate->hold();
    }

    /// Header and payload; -1 when the header is not whole.
    qint64 frameSize() const
    {
        const int shortLength = m_waiting.at(1) & 0x7f;
        const int lengthBytes = shortLength == 127 ? 8 : shortLength == 126 ? 2 : 0;
        const int header = 2 + lengthBytes + (m_waiting.at(1) & 0x80 ? 4 : 0);
        if (m_waiting.size() < header)
            return -1;
        if (lengthBytes == 8)
            return header + qFromBigEndian<qint64>(m_waiting.constData() + 2);
        if (lengthBytes == 2)
            return header + qFromBigEndian<quint16>(m_waiting.constData() + 2);
        return header + shortLength;
    }

    void send(int count)
    {
        m_to->write(m_waiting.left(count));
        m_to->flush();
        m_waiting.remove(0, count);
    }

    MessageGate *m_gate;
    QTcpSocket *m_from;
    QTcpSocket *m_to;
    QByteArray m_waiting;
    int m_number = -1;
    bool m_isHandshakeOver = false;
    bool m_isInMessage = false;
    bool m_isHoldDue = false;
};

MessageGate::MessageGate(quint16 printerPort, QObject *parent)
    : QObject(parent), m_server(new QTcpServer(this)), m_printerPort(printerPort)
{
    connect(m_server, &QTcpServer::newConnection, this, &MessageGate::accept);
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("the message gate cannot listen");
}

MessageGate::~MessageGate()
{
    qDeleteAll(std::exchange(m_links, {}));
}

QUrl MessageGate::url() const
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(m_server->serverPort()));
}

void MessageGate::holdBefore(int number)
{
    m_holdBefore = number;
}

void MessageGate::holdAfter(int number)
{
    m_holdAfter = number;
}

void MessageGate::release()
{
    m_holdBefore = m_holdAfter = -1;
    m_isHeld = false;
    Q_EMIT released();
}

void MessageGate::open()
{
    qDeleteAll(std::exchange(m_links, {}));
    release();
}

void MessageGate::hold()
{
    m_isHeld = true;
    Q_EMIT reached();
}

void MessageGate::accept()
{
    while (QTcpSocket *client = m_server->nextPendingConnection()) {
        auto *link = new QObject(this);
        m_links.append(link);
        client->setParent(link);
        auto *printer = new QTcpSocket(link);
        new Lane(this, client, printer, link);
        new Lane(this, printer, client, link);
        // In order, so that what has been passed on arrives.
        connect(client, &QTcpSocket::disconnected, printer, &QTcpSocket::disconnectFromHost);
        connect(printer, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
        connect(printer, &QTcpSocket::errorOccurred, client, &QTcpSocket::disconnectFromHost);
        printer->connectToHost(QHostAddress(QHostAddress::LocalHost), m_printerPort);
    }
}

} // namespace zytest
