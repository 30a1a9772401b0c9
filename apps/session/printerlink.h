// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection for commands to one printer: opened within a time limit, dropped and opened anew.

#ifndef PRINTERLINK_H
#define PRINTERLINK_H

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <zysendresult.h>
#include <zysslechoclient.h>
#include <zytlstrust.h>

namespace zysession
{

/// How long commands may take, in ms.
struct TimeLimits {
    int connecting = 10000; ///< until the connection is open, the WebSocket handshake included
    int reply = 30000; ///< until a command is answered
    int check = 120000; ///< until the printer has checked a file that it is to print
};

/**
 * One printer's connection. Nothing re-opens a lost one by itself.
 *
 * Files are not sent on it: a client spins the event loop while it sends, and any number of links
 * may share one thread. The library's ZyFileSender makes its own connection.
 *
 * Each opening makes a new client, because a closed connection whose peer is silent cannot be
 * opened again. The object may be deleted in a slot connected to its signals.
 */
class PrinterLink : public QObject
{
    Q_OBJECT

public:
    using Fault = ZySendResult::ConnectionFault;

    PrinterLink(const QUrl &url, const TimeLimits &limits, QObject *parent = nullptr);
    /// Closes the connection.
    ~PrinterLink() override;

    /// For the next opening.
    void setTlsTrust(const ZyTlsTrust &trust) { m_trust = trust; }

    QUrl url() const { return m_url; }
    /// For the next opening.
    void setUrl(const QUrl &url) { m_url = url; }
    const TimeLimits &limits() const { return m_limits; }
    bool isOpen() const;
    /// True once a connection could be opened, even if it is gone by now.
    bool wasOpen() const { return m_wasOpen; }
    /// Why the last opening failed; None while none has.
    Fault fault() const { return m_fault; }
    /// The same in the system's words: of a Network or Tls fault these say more.
    QString faultText() const { return m_faultText; }
    /// Of the certificate that was refused; empty with any other fault.
    QString refusedFingerprint() const { return m_refusedFingerprint; }
    /// Trying again would help no more, since the printer's certificate was refused.
    bool isRefused() const { return !m_refusedFingerprint.isEmpty(); }
    /// The current client; null while there is no connection, nor one being opened.
    ZySslEchoClient *client() const { return m_client; }

    /// Answered by opened() or failed(), never inside the call.
    void open();
    /// Ends the connection, or the opening of one, without any signal.
    void close();

Q_SIGNALS:
    void opened();
    /// No connection came about: fault().
    void failed();
    /// An open connection has ended by itself.
    void dropped();
    /// Each of the printer's messages.
    void received(const QJsonObject &message);

private:
    void onConnected();
    void onDisconnected();
    void watchOpening();
    void fail(Fault fault);

    QUrl m_url;
    TimeLimits m_limits;
    ZyTlsTrust m_trust;
    QPointer<ZySslEchoClient> m_client;
    QTimer m_openingWatch;
    QTimer m_openingLimit;
    bool m_wasOpen = false;
    Fault m_fault = Fault::None;
    QString m_faultText;
    QString m_refusedFingerprint;
};

} // namespace zysession

#endif // PRINTERLINK_H
