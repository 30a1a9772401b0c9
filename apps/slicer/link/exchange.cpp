// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One question to the printer and its answer, within a time limit.

#include "exchange.h"

#include "printerlink.h"
#include "wirewords.h"

#include <zysslechoclient.h>

Exchange::Exchange(PrinterLink &link, QObject *parent) : QObject(parent), m_link(link)
{
    m_timeLimit.setSingleShot(true);
    connect(&m_timeLimit, &QTimer::timeout, this, [this] {
        fail(QStringLiteral("no answer within %1 s").arg(m_timeLimit.interval() / 1000.0));
    });
    connect(&m_link, &PrinterLink::dropped, this, [this] {
        if (m_timeLimit.isActive())
            fail(QStringLiteral("connection lost"));
    });
}

void Exchange::ask(const Question &question, const QString &word, int timeLimit)
{
    await(word, timeLimit);
    question(*m_link.client());
}

void Exchange::await(const QString &word, int timeLimit)
{
    m_word = word;
    m_timeLimit.start(timeLimit);
    connect(m_link.client(), &ZySslEchoClient::jsonMessageReceived, this, &Exchange::onMessage,
            Qt::UniqueConnection);
}

void Exchange::stop()
{
    m_timeLimit.stop();
    if (m_link.client())
        disconnect(m_link.client(), nullptr, this, nullptr);
}

void Exchange::onMessage(const QJsonObject &message)
{
    const bool isAnswer = message.value(wire::cmd).toString() == m_word
        || (m_word == wire::version && message.contains(wire::version));
    if (!isAnswer)
        return;
    stop();
    Q_EMIT answered(message);
}

void Exchange::fail(const QString &reason)
{
    stop();
    Q_EMIT unanswered(reason);
}
