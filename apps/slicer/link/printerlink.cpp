// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection to one printer: opened within a time limit, dropped and opened anew.

#include "printerlink.h"

#include "slicerlog.h"

#include <QMutex>

#include <zysslechoclient.h>

namespace
{

constexpr int openingPollInterval = 20; // ms

/// Qt's first connection in a process registers a conversion without a lock, so two first ones at
/// once, on threads of their own, make it print a warning: connections are opened one by one.
ZySslEchoClient *openedClient(const QUrl &url, QObject *parent)
{
    static QMutex mutex;
    const QMutexLocker locker(&mutex);
    return new ZySslEchoClient(url, parent);
}

} // namespace

QString Printer::description() const
{
    const QString address = url.toString();
    return label == address ? address : QStringLiteral("%1 (%2)").arg(label, address);
}

PrinterLink::PrinterLink(const Printer &printer, const Limits &limits, QObject *parent)
    : QObject(parent), m_printer(printer), m_limits(limits)
{
    m_openingWatch.setInterval(openingPollInterval);
    m_openingLimit.setInterval(limits.connecting);
    m_openingLimit.setSingleShot(true);
    connect(&m_openingWatch, &QTimer::timeout, this, &PrinterLink::watchOpening);
    connect(&m_openingLimit, &QTimer::timeout, this, &PrinterLink::giveUpOpening);
}

PrinterLink::~PrinterLink()
{
    drop();
}

bool PrinterLink::isOpen() const
{
    return m_client && !m_openingLimit.isActive()
        && m_client->socketConnectStatus() == QAbstractSocket::ConnectedState;
}

void PrinterLink::open()
{
    if (isOpen()) {
        QMetaObject::invokeMethod(this, &PrinterLink::opened, Qt::QueuedConnection);
        return;
    }
    drop();
    qCDebug(lcSlicer) << "connecting to" << m_printer.url;
    m_client = openedClient(m_printer.url, this);
    connect(m_client, &ZySslEchoClient::connected, this, &PrinterLink::onConnected);
    connect(m_client, &ZySslEchoClient::disconnected, this, &PrinterLink::onDisconnected);
    m_openingWatch.start();
    m_openingLimit.start();
}

void PrinterLink::drop()
{
    m_openingWatch.stop();
    m_openingLimit.stop();
    if (!m_client)
        return;
    ZySslEchoClient *client = m_client;
    m_client = nullptr;
    client->disconnect(); // nobody hears of it any more
    client->close(); // a send loop further down the stack ends
    client->deleteLater();
}

void PrinterLink::onConnected()
{
    m_openingWatch.stop();
    m_openingLimit.stop();
    m_wasOpen = true;
    qCDebug(lcSlicer) << "connected to" << m_printer.url;
    Q_EMIT opened();
}

void PrinterLink::onDisconnected()
{
    qCDebug(lcSlicer) << "connection lost to" << m_printer.url;
    drop();
    Q_EMIT dropped();
}

/// A first attempt that fails emits nothing, so the socket's state is looked at.
void PrinterLink::watchOpening()
{
    if (m_client->socketConnectStatus() == QAbstractSocket::UnconnectedState)
        giveUpOpening();
}

void PrinterLink::giveUpOpening()
{
    qCDebug(lcSlicer) << "no connection to" << m_printer.url;
    drop();
    Q_EMIT failed();
}
