// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One file on its way to one printer, with its progress as events.

#include "transfer.h"

namespace zybridge
{

namespace
{

using Ending = ZySendResult::Ending;

constexpr qint64 progressInterval = 1000; // ms between events

QString wordOf(Ending ending)
{
    switch (ending) {
    case Ending::CheckFailed:
        return QStringLiteral("check-failed");
    case Ending::BusyReceiving:
    case Ending::BusyChecking:
        return QStringLiteral("busy");
    case Ending::TokenRejected:
        return QStringLiteral("token-rejected");
    case Ending::LocalFile:
        return QStringLiteral("no-file");
    case Ending::NoConnection:
        return QStringLiteral("offline");
    case Ending::GaveUp:
        return QStringLiteral("gave-up");
    default:
        return QStringLiteral("refused");
    }
}

} // namespace

Transfer::Transfer(const zysession::Printer &printer, const QString &path, const QString &name,
                   PrinterTopics &topics, QObject *parent)
    : QObject(parent), m_name(name), m_topics(topics), m_sender(printer.url, path, name)
{
    ZySendOptions options;
    options.setToken(printer.token);
    options.setTlsTrust(printer.trust());
    m_sender.setOptions(options);
    connect(&m_sender, &ZyFileSender::progress, this, &Transfer::onProgress);
    connect(&m_sender, &ZyFileSender::finished, this, &Transfer::onFinished);
}

void Transfer::onProgress(qint64 received, qint64 total)
{
    if (m_sinceProgress.isValid() && !m_sinceProgress.hasExpired(progressInterval))
        return;
    m_sinceProgress.start();
    m_topics.publishEvent(QStringLiteral("sending"),
                          {{QStringLiteral("file"), m_name},
                           {QStringLiteral("received"), received},
                           {QStringLiteral("total"), total}});
}

void Transfer::onFinished(const ZySendResult &result)
{
    QJsonObject details{{QStringLiteral("file"), m_name},
                        {QStringLiteral("received"), result.bytes()},
                        {QStringLiteral("total"), result.total()}};
    if (result.isSent()) {
        m_topics.publishEvent(QStringLiteral("sent"), details);
        Q_EMIT ended({}, result.storedName(), false);
        return;
    }
    const Failure failure{wordOf(result.ending()), result.sentence()};
    details.insert(QStringLiteral("error"), failure.word);
    details.insert(QStringLiteral("text"), failure.text);
    m_topics.publishEvent(QStringLiteral("not-sent"), details);
    Q_EMIT ended(failure, {},
                 result.ending() == Ending::LocalFile || result.ending() == Ending::CheckFailed);
}

} // namespace zybridge
