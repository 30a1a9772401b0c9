// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel's connection: opening it, noticing that it is lost or silent, asking for the status.

#include "printercontrol.h"

#include "conversation.h"
#include "words.h"

#include <QLocale>

#include <algorithm>

namespace zypanel
{

using zysession::PrinterLink;
using zysession::PrinterStatus;

PrinterControl::PrinterControl(QObject *parent) : QObject(parent)
{
    m_reconnectTimer.setSingleShot(true);
    connect(&m_pollTimer, &QTimer::timeout, this, &PrinterControl::poll);
    connect(&m_reconnectTimer, &QTimer::timeout, this, [this] { m_conversation->link.open(); });
}

PrinterControl::~PrinterControl() = default;

QString PrinterControl::nameOf(const zysession::Printer &printer)
{
    const bool hasName = !printer.name.isEmpty() || !printer.announcedName.isEmpty();
    return hasName ? printer.label() : printer.url.authority();
}

void PrinterControl::connectTo(const zysession::Printer &printer, const QString &token)
{
    const bool isAnother = printer.url != m_printer.url;
    close();
    m_printer = printer;
    m_conversation = std::make_unique<Conversation>(printer, m_timing.limits);
    setToken(token);
    listen();
    listenToCommands();
    m_conversation->link.open();
    if (isAnother) {
        setStatus({});
        Q_EMIT printerChanged();
    }
    setLink(Link::Connecting);
}

void PrinterControl::setToken(const QString &token)
{
    m_printer.token = token;
    if (m_conversation)
        m_conversation->setToken(token);
}

void PrinterControl::disconnectFromPrinter()
{
    if (m_link == Link::Closed)
        return;
    close();
    setStatus({});
    setLink(Link::Closed);
    say(Severity::Info, tr("Disconnected from %1.").arg(printerName()));
}

void PrinterControl::rename(const zysession::Printer &printer)
{
    if (printer.url == m_printer.url)
        m_printer.name = printer.name;
}

void PrinterControl::close()
{
    m_pollTimer.stop();
    m_reconnectTimer.stop();
    m_conversation.reset();
    setChecking(false);
}

void PrinterControl::listen()
{
    const PrinterLink *link = &m_conversation->link;
    connect(link, &PrinterLink::opened, this, &PrinterControl::onOpened);
    connect(link, &PrinterLink::failed, this, &PrinterControl::onFailed);
    connect(link, &PrinterLink::dropped, this, &PrinterControl::onDropped);
    connect(link, &PrinterLink::received, this, &PrinterControl::onHeard);
    connect(&m_conversation->status, &zysession::Exchange::ended, this, &PrinterControl::onStatus);
    connect(&m_conversation->version, &zysession::Exchange::ended, this,
            &PrinterControl::onVersion);
}

void PrinterControl::onOpened()
{
    m_pause = 0;
    m_conversation->version.askVersion();
    m_conversation->status.askStatus();
    m_pollTimer.start(m_timing.polling);
    setLink(Link::Open);
    say(Severity::Good, tr("Connected to %1.").arg(printerName()));
}

void PrinterControl::onFailed()
{
    const PrinterLink &link = m_conversation->link;
    if (m_link == Link::Lost && !link.isRefused()) {
        reconnectLater();
        return;
    }
    const Notice notice = connectionFaultNotice(link.fault(), printerName(), link.faultText());
    const QString fingerprint = link.refusedFingerprint();
    // A user who names who vouches for the printer wants nobody else to.
    const bool isUnknown
        = link.isRefused() && m_printer.authorities.isEmpty() && m_printer.fingerprint.isEmpty();
    close();
    setStatus({});
    setLink(Link::Closed);
    Q_EMIT noticed(notice);
    if (isUnknown)
        Q_EMIT certificateUnknown(fingerprint);
}

void PrinterControl::onDropped()
{
    m_pollTimer.stop();
    reconnectLater();
    setLink(Link::Lost);
    say(Severity::Error,
        tr("The connection to %1 was lost. It is opened again as soon as the printer answers.")
            .arg(printerName()));
}

void PrinterControl::reconnectLater()
{
    m_pause = std::clamp(2 * m_pause, m_timing.firstPause, m_timing.longestPause);
    m_reconnectTimer.start(m_pause);
}

void PrinterControl::poll()
{
    if (m_link == Link::Open && !m_conversation->status.isUnderWay()) {
        m_conversation->status.askStatus();
    } else if (m_link == Link::Silent && m_silentSince.hasExpired(m_timing.limits.check)) {
        // No check takes longer: the connection is dead, though nothing has ended it.
        m_conversation->link.close();
        onDropped();
    }
}

/// Any message: what was asked last may have been given up already.
void PrinterControl::onHeard()
{
    m_lastHeard = QDateTime::currentDateTime();
    if (m_link != Link::Silent)
        return;
    setLink(Link::Open);
    say(Severity::Good, tr("%1 answers again.").arg(printerName()));
}

void PrinterControl::onStatus(const Result &result)
{
    using Ending = zysession::Exchange::Ending;
    // A printer may leave the requests of a connection unanswered while it checks for it.
    if (result.ending == Ending::NoAnswer && m_link == Link::Open && !m_isChecking) {
        m_silentSince.start();
        setLink(Link::Silent);
        say(Severity::Warning,
            tr("%1 does not answer at the moment. What is shown is from %2.")
                .arg(printerName(), QLocale().toString(m_lastHeard.time())));
    } else if (result.ending == Ending::Done || result.ending == Ending::TokenRejected) {
        const QString before = m_status.word;
        const PrinterStatus status = PrinterStatus::fromReply(result.answer);
        setStatus(status);
        if (status.word != before)
            Q_EMIT noticed(stateNotice(status.state, status.filename));
    }
}

void PrinterControl::onVersion(const Result &result)
{
    const QString version = zysession::Exchange::versionOf(result.answer);
    if (result.ending == zysession::Exchange::Ending::Done && version.toInt() != 1)
        say(Severity::Warning,
            tr("The printer speaks version “%1” of the protocol; this program knows version 1.")
                .arg(version));
}

void PrinterControl::setLink(Link link)
{
    if (link == m_link)
        return;
    m_link = link;
    Q_EMIT linkChanged(link);
}

void PrinterControl::setStatus(const PrinterStatus &status)
{
    if (status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged(m_status);
}

void PrinterControl::say(Severity severity, const QString &text)
{
    Q_EMIT noticed({severity, Topic::Connection, text});
}

} // namespace zypanel
