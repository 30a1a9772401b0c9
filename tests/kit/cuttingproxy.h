// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A TCP proxy that mistreats the connections between a real client and a real printer.

#ifndef CUTTINGPROXY_H
#define CUTTINGPROXY_H

#include <QObject>
#include <QUrl>
#include <QVector>

#include <array>
#include <optional>

class QTcpServer;
class QTcpSocket;
class QTimer;

namespace zytest
{

/**
 * Sits between a client, which connects to url(), and the printer at a port of this machine.
 *
 * Without further instructions it forwards everything at once. All faults apply to the connection
 * that is open and to those that follow. Buffers are small, so a frozen or throttled proxy slows
 * the sender down as a slow network would.
 */
class CuttingProxy : public QObject
{
    Q_OBJECT

public:
    enum Direction { ToPrinter, ToClient };
    enum class Ending {
        Close, ///< what was forwarded still arrives, then the connection ends in order
        Reset, ///< the connection is reset; bytes under way may be lost
    };

    explicit CuttingProxy(quint16 printerPort, QObject *parent = nullptr);
    ~CuttingProxy() override;

    QUrl url() const;

    /// Once @p bytes more have been forwarded in @p direction, ends both halves; 0 cuts before the
    /// next byte. Disarmed by the cut, so a connection made afterwards lives.
    void cutAfter(Direction direction, qint64 bytes, Ending ending = Ending::Close);
    /// Ends both halves of every open connection now.
    void cut(Ending ending = Ending::Close);

    /// Forwards nothing in either direction, and keeps the connections open.
    void freeze();
    void thaw();

    /// At most @p bytes in one TCP segment, one segment in each turn of the event loop; 0 for no
    /// limit.
    void setPieceSize(Direction direction, int bytes);
    /// At most about @p bytesPerSecond in each direction; 0 for no limit.
    void setThroughput(int bytesPerSecond);

    /// Bytes forwarded in @p direction so far, over all connections.
    qint64 forwarded(Direction direction) const { return m_lanes[direction].forwarded; }
    int connectionCount() const { return m_connectionCount; }
    int cutCount() const { return m_cutCount; }

Q_SIGNALS:
    void wasCut();

private:
    class Link;

    struct Lane {
        qint64 forwarded = 0;
        int pieceSize = 0;
        std::optional<qint64> untilCut;
        Ending ending = Ending::Close;
    };

    void accept();
    void wakeLinks();
    /// How much may be forwarded now, of @p available bytes.
    qint64 allowance(Direction direction, qint64 available) const;
    void spend(Direction direction, qint64 count);

    QTcpServer *m_server;
    QTimer *m_refill;
    QVector<Link *> m_links;
    quint16 m_printerPort;
    std::array<Lane, 2> m_lanes;
    bool m_isFrozen = false;
    std::array<qint64, 2> m_credit{};
    int m_throughput = 0;
    int m_connectionCount = 0;
    int m_cutCount = 0;
};

} // namespace zytest

#endif // CUTTINGPROXY_H
