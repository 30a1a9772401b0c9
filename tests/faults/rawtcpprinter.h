// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A printer that shakes hands and then writes whatever bytes it is told to.

#ifndef RAWTCPPRINTER_H
#define RAWTCPPRINTER_H

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

namespace zytest
{

class RawTcpPrinter
{
public:
    using Speech = std::function<QByteArray()>;

    /// Writes what @p speech returns to each connection after the handshake.
    explicit RawTcpPrinter(Speech speech);

    QUrl url() const;
    int connectionCount() const { return m_connectionCount; }
    /// Says that nothing more will come. The connection ends when the client has read all that
    /// came.
    void hangUp();

private:
    void accept();
    void speakTo(QTcpSocket *client, const QByteArray &request);

    Speech m_speech;
    QPointer<QTcpSocket> m_client;
    int m_connectionCount = 0;
    QTcpServer m_server;
};

} // namespace zytest

#endif // RAWTCPPRINTER_H
