// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The connection for commands to one printer: opened within a time limit, dropped and opened anew.

#include "printerlink.h"

#include "savedprinters.h"

#include <QLoggingCategory>

#include <zyfilesender.h>

namespace zysession
{

namespace
{

Q_LOGGING_CATEGORY(lcSession, "zysession", QtInfoMsg)

constexpr int openingPollInterval = 20; // ms

} // namespace

PrinterLink::PrinterLink(const QUrl &url, const TimeLimits &limits, QObject *parent)
    : QObject(parent), m_url(url), m_limits(limits)
{
    m_openingWatch.setInterval(openingPollInterval);
    m_openingLimit.setInterval(limits.connecting);
    m_openingLimit.setSingleShot(true);
    connect(&m_openingWatch, &QTimer::timeout, this, &PrinterLink::watchOpening);
    connect(&m_openingLimit, &QTimer::timeout, this, [this] { fail(Fault::TimedOut); });
}

PrinterLink::~PrinterLink()
{
    close();
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
    close();
    m_openingWatch.start();
    if (printerUrl(m_url.toString()).isEmpty())
        return; // the watch finds no client
    qCDebug(lcSession) << "connecting to" << m_url;
    m_client = new ZySslEchoClient(m_url, m_trust, this);
    connect(m_client, &ZySslEchoClient::connected, this, &PrinterLink::onConnected);
    connect(m_client, &ZySslEchoClient::disconnected, this, &PrinterLink::onDisconnected);
    connect(m_client, &ZySslEchoClient::jsonMessageReceived, this, &PrinterLink::received);
    m_openingLimit.start();
}

void PrinterLink::close()
{
    m_openingWatch.stop();
    m_openingLimit.stop();
    if (!m_client)
        return;
    ZySslEchoClient *client = m_client;
    m_client = nullptr;
    client->disconnect(); // nobody hears of it any more
    client->close();
    client->deleteLater();
}

void PrinterLink::onConnected()
{
    m_openingWatch.stop();
    m_openingLimit.stop();
    m_wasOpen = true;
    m_fault = Fault::None;
    m_faultText.clear();
    m_refusedFingerprint.clear();
    qCDebug(lcSession) << "connected to" << m_url;
    Q_EMIT opened();
}

void PrinterLink::onDisconnected()
{
    qCDebug(lcSession) << "connection lost to" << m_url;
    close();
    Q_EMIT dropped();
}

/// A first attempt that fails emits nothing, so the client is looked at.
void PrinterLink::watchOpening()
{
    const Fault fault = m_client ? ZyFileSender::connectionFault(*m_client) : Fault::BadAddress;
    if (fault != Fault::None)
        fail(fault);
}

void PrinterLink::fail(Fault fault)
{
    m_fault = fault;
    m_faultText = m_client ? m_client->socketErrorText() : QString();
    m_refusedFingerprint = m_client ? m_client->refusedFingerprint() : QString();
    qCDebug(lcSession) << "no connection to" << m_url << fault << m_faultText;
    close();
    Q_EMIT failed();
}

} // namespace zysession
