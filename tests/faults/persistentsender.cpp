// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Sends a file as a careful application does: notices drops and stalls, and resends until done.

#include "persistentsender.h"

#include "eventlines.h"

#include <zysslechoclient.h>

#include <QCoreApplication>

#include <cstdio>
#include <utility>

namespace
{

constexpr int pauseBetweenAttempts = 30; // ms
constexpr int pollInterval = 10; // ms

PersistentSender *logReader = nullptr;

} // namespace

PersistentSender::PersistentSender(Plan plan) : m_plan(std::move(plan))
{
    logReader = this;
    qInstallMessageHandler(&PersistentSender::readLog);
    m_stall.setInterval(m_plan.stall);
    m_stall.setSingleShot(true);
    m_stall.callOnTimeout(this, [this] { endAttempt("stalled"); });
    // A first connection that fails is told by no signal.
    m_connecting.setInterval(pollInterval);
    m_connecting.callOnTimeout(this, [this] {
        if (m_client->socketConnectStatus() == QAbstractSocket::UnconnectedState)
            endAttempt("unreachable");
    });
    startAttempt();
}

PersistentSender::~PersistentSender()
{
    qInstallMessageHandler(nullptr);
    logReader = nullptr;
}

/// How far the client has sent is only in its log.
void PersistentSender::readLog(QtMsgType type, const QMessageLogContext &, const QString &line)
{
    if (line.startsWith(QLatin1String("sendBytes=")))
        logReader->m_attempt.sentTo = line.section(QLatin1Char(' '), 1, 1).toLongLong();
    else if (line == QLatin1String("start send"))
        logReader->m_isSendLoopRunning = true;
    else if (line == QLatin1String("send end"))
        logReader->m_isSendLoopRunning = false;
    else if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(line));
}

void PersistentSender::startAttempt()
{
    m_attempt = {};
    ++m_attemptCount;
    if (m_plan.isClientReused && m_client) {
        m_client->openWithUrl(m_plan.url);
    } else {
        m_client = std::make_unique<ZySslEchoClient>(m_plan.url);
        connectClient();
    }
    m_stall.start();
    m_connecting.start();
}

void PersistentSender::connectClient()
{
    connect(m_client.get(), &ZySslEchoClient::connected, this, [this] {
        m_connecting.stop();
        m_stall.start();
        printEvent("connected");
        m_client->sendFile(m_plan.file, QStringLiteral("part.bin"));
    });
    connect(m_client.get(), &ZySslEchoClient::disconnected, this,
            [this] { endAttempt("dropped"); });
    connect(m_client.get(), &ZySslEchoClient::pauseSuccess, this,
            [this] { endAttempt("dropped"); });
    connect(m_client.get(), &ZySslEchoClient::jsonMessageReceived, this,
            &PersistentSender::onReply);
    connect(m_client.get(), &ZySslEchoClient::fileTransProgress, this,
            [this](const QString &, qlonglong, qlonglong received) { onProgress(received); });
    connect(m_client.get(), &ZySslEchoClient::transError, this, &PersistentSender::onTransError);
    connect(m_client.get(), &ZySslEchoClient::finish, this,
            [this](const QString &, int checkState) {
                printEvent("finish", {{QStringLiteral("checkstate"), checkState}});
                m_exitCode = checkState == 1 ? 0 : 1;
                endAttempt("finished");
            });
    connect(m_client.get(), &ZySslEchoClient::cancelFinished, this, [this] {
        printEvent("cancelled");
        m_exitCode = 0;
        endAttempt("cancelled");
    });
}

/// The reply that started the send loop comes by when the loop has ended.
void PersistentSender::onReply(const QJsonObject &reply)
{
    const QString command = reply.value(QLatin1String("cmd")).toString();
    const bool isStartFile = command == QLatin1String("START_FILE");
    if (!isStartFile && !command.isEmpty())
        return;
    printEvent("reply", reply);
    if (isStartFile && reply.value(QLatin1String("errorcode")).toInt() == 0)
        m_attempt.offset = reply.value(QLatin1String("offset")).toString().toLongLong();
    // A printer that cannot read what stands in the way leaves out "cmd".
    if (command.isEmpty() && reply.contains(QLatin1String("errorcode")))
        giveUp();
}

void PersistentSender::onProgress(qint64 received)
{
    printEvent("progress", {{QStringLiteral("received"), received}});
    m_stall.start();
    m_attempt.received = received;
    ++m_attempt.chunks;
    if (m_attempt.chunks == m_plan.dropAfter && m_attemptCount == 1)
        m_client->close();
    if (m_attempt.chunks == m_plan.cancelAfter)
        m_client->cancel();
}

void PersistentSender::onTransError(int code)
{
    printEvent("transError", {{QStringLiteral("code"), code}});
    if (code == 1)
        endAttempt("refused"); // as long as the printer has not noticed the drop
    else
        giveUp();
}

void PersistentSender::endAttempt(const char *why)
{
    if (std::exchange(m_attempt.isOver, true))
        return;
    m_attempt.why = why;
    m_stall.stop();
    m_connecting.stop();
    // Ends the send loop, which would wait for ever on a dropped connection.
    m_client->close();
    QTimer::singleShot(pauseBetweenAttempts, this, &PersistentSender::goOn);
}

void PersistentSender::giveUp()
{
    m_exitCode = 1;
    endAttempt("gave up");
}

void PersistentSender::goOn()
{
    if (m_isSendLoopRunning) {
        QTimer::singleShot(pollInterval, this, &PersistentSender::goOn);
        return;
    }
    printEvent("attempt",
               {{QStringLiteral("offset"), m_attempt.offset},
                {QStringLiteral("sentTo"), m_attempt.sentTo},
                {QStringLiteral("received"), m_attempt.received},
                {QStringLiteral("why"), QLatin1String(m_attempt.why)}});
    if (m_exitCode < 0 && m_attemptCount >= m_plan.attempts)
        m_exitCode = 1;
    if (m_exitCode < 0) {
        startAttempt();
        return;
    }
    if (m_exitCode != 0)
        printEvent("failed");
    QCoreApplication::exit(m_exitCode);
}
