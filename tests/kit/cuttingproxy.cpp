// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A TCP proxy that mistreats the connections between a real client and a real printer.

#include "cuttingproxy.h"

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

#include <sys/socket.h>

namespace zytest
{

namespace
{

constexpr qint64 bufferLimit = 64 * 1024;
constexpr int refillInterval = 10; // ms
constexpr int refillsPerSecond = 1000 / refillInterval;

void reset(QTcpSocket *socket)
{
    // Closing with no time to linger makes the kernel send RST.
    const linger noTime{1, 0};
    ::setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &noTime,
                 sizeof noTime);
    socket->abort();
}

} // namespace

/// One client's connection and the proxy's to the printer.
class CuttingProxy::Link : public QObject
{
public:
    Link(CuttingProxy &proxy, QTcpSocket *client);

    void pump(Direction direction);
    void end(Ending ending);
    bool isEnding() const { return m_isEnding; }

private:
    QTcpSocket *source(Direction direction) const
    {
        return direction == ToPrinter ? m_client : m_printer;
    }
    QTcpSocket *sink(Direction direction) const
    {
        return direction == ToPrinter ? m_printer : m_client;
    }

    void watch(QTcpSocket *socket, Direction outgoing);
    void pumpSoon(Direction direction);
    void onSourceEnded(Direction direction);
    void halfClose(QTcpSocket *socket);

    CuttingProxy &m_proxy;
    QTcpSocket *m_client;
    QTcpSocket *m_printer;
    std::array<bool, 2> m_isScheduled{};
    bool m_isEnding = false;
};

CuttingProxy::Link::Link(CuttingProxy &proxy, QTcpSocket *client)
    : QObject(&proxy), m_proxy(proxy), m_client(client), m_printer(new QTcpSocket(this))
{
    client->setParent(this);
    watch(m_client, ToPrinter);
    watch(m_printer, ToClient);
    connect(m_printer, &QTcpSocket::connected, this, [this] {
        m_printer->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        pump(ToPrinter);
    });
    connect(m_printer, &QTcpSocket::errorOccurred, this, [this] {
        if (m_printer->state() != QAbstractSocket::ConnectedState)
            end(Ending::Close);
    });
    client->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_printer->connectToHost(QHostAddress(QHostAddress::LocalHost), proxy.m_printerPort);
}

void CuttingProxy::Link::watch(QTcpSocket *socket, Direction outgoing)
{
    const Direction incoming = outgoing == ToPrinter ? ToClient : ToPrinter;
    socket->setReadBufferSize(bufferLimit);
    connect(socket, &QTcpSocket::readyRead, this, [this, outgoing] { pump(outgoing); });
    connect(socket, &QTcpSocket::bytesWritten, this, [this, socket, incoming] {
        if (!m_isEnding)
            pumpSoon(incoming);
        else if (socket->bytesToWrite() == 0)
            halfClose(socket);
    });
    connect(socket, &QTcpSocket::disconnected, this, [this, outgoing] { onSourceEnded(outgoing); });
}

void CuttingProxy::Link::pump(Direction direction)
{
    QTcpSocket *from = source(direction);
    QTcpSocket *to = sink(direction);
    if (m_isEnding) {
        from->readAll();
        return;
    }
    Lane &lane = m_proxy.m_lanes[direction];
    const qint64 available = from->bytesAvailable();
    if (available > 0 && lane.untilCut == 0) {
        m_proxy.cut(lane.ending);
        return;
    }
    if (to->state() != QAbstractSocket::ConnectedState || to->bytesToWrite() >= bufferLimit)
        return;
    const qint64 count = m_proxy.allowance(direction, available);
    if (count > 0) {
        m_proxy.spend(direction, count);
        to->write(from->read(count));
        to->flush();
        if (lane.untilCut == 0)
            m_proxy.cut(lane.ending);
        else if (from->bytesAvailable() > 0)
            pumpSoon(direction);
    }
    if (from->state() == QAbstractSocket::UnconnectedState && from->bytesAvailable() == 0)
        end(Ending::Close);
}

/// A timer and not a posted event, so that the sockets get their turn between two pieces.
void CuttingProxy::Link::pumpSoon(Direction direction)
{
    if (m_isScheduled[direction])
        return;
    m_isScheduled[direction] = true;
    QTimer::singleShot(0, this, [this, direction] {
        m_isScheduled[direction] = false;
        pump(direction);
    });
}

void CuttingProxy::Link::onSourceEnded(Direction direction)
{
    if (!m_isEnding && source(direction)->bytesAvailable() > 0) {
        pump(direction);
        return;
    }
    end(Ending::Close);
    if (m_client->state() == QAbstractSocket::UnconnectedState
        && m_printer->state() == QAbstractSocket::UnconnectedState)
        deleteLater();
}

void CuttingProxy::Link::end(Ending ending)
{
    if (m_isEnding)
        return;
    m_isEnding = true;
    for (QTcpSocket *socket : {m_client, m_printer}) {
        if (ending == Ending::Reset)
            reset(socket);
        else if (socket->state() == QAbstractSocket::ConnectingState)
            socket->abort();
        else
            halfClose(socket);
    }
    if (ending == Ending::Reset)
        deleteLater();
}

/// Not a full close: that would reset the connection while bytes from the peer are unread.
void CuttingProxy::Link::halfClose(QTcpSocket *socket)
{
    socket->readAll();
    if (socket->state() == QAbstractSocket::ConnectedState && socket->bytesToWrite() == 0)
        ::shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR);
}

CuttingProxy::CuttingProxy(quint16 printerPort, QObject *parent)
    : QObject(parent), m_server(new QTcpServer(this)), m_refill(new QTimer(this)),
      m_printerPort(printerPort)
{
    connect(m_server, &QTcpServer::newConnection, this, &CuttingProxy::accept);
    connect(m_refill, &QTimer::timeout, this, &CuttingProxy::wakeLinks);
    m_refill->setInterval(refillInterval);
    m_refill->setTimerType(Qt::PreciseTimer);
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("the cutting proxy cannot listen");
}

CuttingProxy::~CuttingProxy()
{
    // Before the members that a link's sockets would still report to.
    qDeleteAll(QVector<Link *>(m_links));
}

QUrl CuttingProxy::url() const
{
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(m_server->serverPort()));
}

void CuttingProxy::cutAfter(Direction direction, qint64 bytes, Ending ending)
{
    m_lanes[direction].untilCut = bytes;
    m_lanes[direction].ending = ending;
}

void CuttingProxy::cut(Ending ending)
{
    for (Lane &lane : m_lanes)
        lane.untilCut.reset();
    const auto links = m_links;
    for (Link *link : links)
        link->end(ending);
    ++m_cutCount;
    Q_EMIT wasCut();
}

void CuttingProxy::freeze()
{
    m_isFrozen = true;
}

void CuttingProxy::thaw()
{
    m_isFrozen = false;
    wakeLinks();
}

void CuttingProxy::setPieceSize(Direction direction, int bytes)
{
    m_lanes[direction].pieceSize = bytes;
}

void CuttingProxy::setThroughput(int bytesPerSecond)
{
    m_throughput = bytesPerSecond;
    if (bytesPerSecond > 0)
        m_refill->start();
    else
        m_refill->stop();
    wakeLinks();
}

void CuttingProxy::accept()
{
    while (QTcpSocket *client = m_server->nextPendingConnection()) {
        auto *link = new Link(*this, client);
        m_links.append(link);
        connect(link, &QObject::destroyed, this, [this, link] { m_links.removeOne(link); });
        ++m_connectionCount;
    }
}

void CuttingProxy::wakeLinks()
{
    m_credit.fill(std::max(1, m_throughput / refillsPerSecond));
    const auto links = m_links;
    for (Link *link : links) {
        link->pump(ToPrinter);
        link->pump(ToClient);
    }
}

qint64 CuttingProxy::allowance(Direction direction, qint64 available) const
{
    if (m_isFrozen)
        return 0;
    const Lane &lane = m_lanes[direction];
    qint64 count = available;
    if (lane.untilCut)
        count = std::min(count, *lane.untilCut);
    if (lane.pieceSize > 0)
        count = std::min<qint64>(count, lane.pieceSize);
    if (m_throughput > 0)
        count = std::min(count, m_credit[direction]);
    return count;
}

void CuttingProxy::spend(Direction direction, qint64 count)
{
    Lane &lane = m_lanes[direction];
    lane.forwarded += count;
    if (lane.untilCut)
        *lane.untilCut -= count;
    m_credit[direction] -= count;
}

} // namespace zytest
