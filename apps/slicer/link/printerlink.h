// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection to one printer: opened within a time limit, dropped and opened anew.

#ifndef PRINTERLINK_H
#define PRINTERLINK_H

#include "timelimits.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <zysslechoclient.h>

/// A printer as the user knows it.
struct Printer {
    QString label; ///< the saved name, or the URL when it has none
    QUrl url;

    /// "bench1 (ws://…)", or the URL alone.
    QString description() const;
};

/**
 * Each opening makes a new client: a client that failed on its local file starts no further
 * transfer, and a closed connection whose peer is silent cannot be opened again.
 */
class PrinterLink : public QObject
{
    Q_OBJECT

public:
    PrinterLink(const Printer &printer, const Limits &limits, QObject *parent = nullptr);
    ~PrinterLink() override;

    const Printer &printer() const { return m_printer; }
    const Limits &limits() const { return m_limits; }
    /// The current client; null while there is no connection, nor one being opened.
    ZySslEchoClient *client() const { return m_client; }
    /// True once a connection could be opened, even if it is gone by now.
    bool wasOpen() const { return m_wasOpen; }
    bool isOpen() const;

    /// Answered by opened() or failed(), never inside the call.
    void open();
    /// Ends the connection, and a transfer on it, without any signal.
    void drop();

Q_SIGNALS:
    void opened();
    void failed();
    /// An open connection has ended by itself.
    void dropped();

private:
    void onConnected();
    void onDisconnected();
    void watchOpening();
    void giveUpOpening();

    Printer m_printer;
    Limits m_limits;
    QPointer<ZySslEchoClient> m_client;
    QTimer m_openingWatch;
    QTimer m_openingLimit;
    bool m_wasOpen = false;
};

#endif // PRINTERLINK_H
