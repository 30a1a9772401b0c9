// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A file sender's half in its own thread: the client, the clock, and what the machine decides.

#include "sendworker.h"

#include "envelope.h"
#include "vocabulary.h"
#include "zyfilesender.h"

#include <zysslechoclient.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QMutex>

#include <algorithm>
#include <climits>

namespace zyws
{

namespace
{

constexpr int connectWatchInterval = 20; // ms

/// Qt's first connection in a process registers a conversion without a lock, and two first ones at
/// once in two threads make it print a warning: connections are opened one by one.
std::unique_ptr<ZySslEchoClient> openClient(const QUrl &url, const ZyTlsTrust &trust)
{
    static QMutex mutex;
    const QMutexLocker locker(&mutex);
    return std::make_unique<ZySslEchoClient>(url, trust);
}

bool isPrinterAddress(const QUrl &url)
{
    const bool isWebSocket
        = url.scheme() == QLatin1String("ws") || url.scheme() == QLatin1String("wss");
    return url.isValid() && isWebSocket && !url.host().isEmpty();
}

} // namespace

SendWorker::SendWorker(const SendJob &job)
    : m_job(job), m_timeLimit(this), m_connectWatch(this), m_restEnd(this)
{
    m_timeLimit.setSingleShot(true);
    m_restEnd.setSingleShot(true);
    m_connectWatch.setInterval(connectWatchInterval);
    connect(&m_timeLimit, &QTimer::timeout, this, [this] { feed({SendEvent::TimeLimit}); });
    connect(&m_connectWatch, &QTimer::timeout, this, &SendWorker::watchConnecting);
}

SendWorker::~SendWorker() = default;

void SendWorker::start()
{
    m_size = QFileInfo(m_job.path).size();
    m_machine.emplace(m_job.name, m_size, m_job.printer.toString(), m_job.options);
    if (feedFileFault())
        return;
    if (m_job.options.sendsDigest()) {
        m_digest.emplace(m_job.path, [this](qint64 done) { onRead(done); });
        m_digest->update();
    }
    feed({SendEvent::Start});
}

void SendWorker::cancel()
{
    SendEvent event{SendEvent::CancelRequested};
    event.offset = transferOffset();
    event.window = transferWindow();
    feed(event);
}

void SendWorker::leave()
{
    feed({SendEvent::LeaveRequested});
}

void SendWorker::feed(const SendEvent &event)
{
    const SendActions actions = m_machine->handle(event);
    m_canCancel = m_machine->canCancel();
    for (const SendAction &action : actions)
        perform(action);
}

void SendWorker::perform(const SendAction &action)
{
    switch (action.kind) {
    case SendAction::Connect:
        connectToPrinter();
        break;
    case SendAction::Offer:
        if (m_digest)
            m_client->setFileDigest(QString::fromLatin1(m_digest->hex()));
        m_client->sendFile(m_job.path, m_job.name);
        break;
    case SendAction::Cancel:
        endRest();
        m_client->cancel();
        break;
    case SendAction::Drop:
        endRest();
        dropConnection();
        break;
    case SendAction::StartTimer:
        m_timeLimit.start(static_cast<int>(action.number));
        break;
    case SendAction::StopTimer:
        m_timeLimit.stop();
        break;
    case SendAction::TellOffered:
        Q_EMIT offered();
        break;
    case SendAction::TellResumed:
        Q_EMIT resumed(action.number);
        break;
    case SendAction::TellRestarted:
        Q_EMIT restarted();
        break;
    case SendAction::TellProgress:
        Q_EMIT progress(action.number, m_size);
        break;
    case SendAction::TellRetrying:
        Q_EMIT retrying(action.interruption, action.attempt, static_cast<int>(action.number));
        break;
    case SendAction::Finish:
        if (m_digest)
            m_digest->stop();
        Q_EMIT finished(action.result);
        break;
    }
}

void SendWorker::connectToPrinter()
{
    if (!isPrinterAddress(m_job.printer)) {
        SendEvent event{SendEvent::ConnectFailed};
        event.connectionFault = ZySendResult::ConnectionFault::BadAddress;
        feed(event);
        return;
    }
    m_client = openClient(m_job.printer, m_job.options.tlsTrust());
    m_client->setCompressionLevel(m_job.options.compressionLevel());
    m_client->setCompressionThreads(-1);
    m_client->setWindow(2);
    m_client->setFileToken(m_job.options.token());
    const ZySslEchoClient *client = m_client.get();
    connect(client, &ZySslEchoClient::connected, this, &SendWorker::onConnected);
    connect(client, &ZySslEchoClient::disconnected, this, [this] {
        SendEvent event{SendEvent::Dropped};
        event.offset = transferOffset();
        event.code = m_client->closeCode();
        feed(event);
    });
    connect(client, &ZySslEchoClient::jsonMessageReceived, this, &SendWorker::onReply);
    connect(client, &ZySslEchoClient::transError, this, &SendWorker::onTransferError);
    connect(client, &ZySslEchoClient::cancelFinished, this,
            [this] { feed({SendEvent::CancelConfirmed}); });
    m_connectWatch.start();
}

/// A send loop of this client further up the stack ends.
void SendWorker::dropConnection()
{
    m_connectWatch.stop();
    if (!m_client)
        return;
    m_client->disconnect(this);
    m_client.reset();
}

/// A first attempt that fails emits nothing.
void SendWorker::watchConnecting()
{
    SendEvent event{SendEvent::ConnectFailed};
    event.connectionFault = ZyFileSender::connectionFault(*m_client);
    event.text = m_client->socketErrorText();
    event.key = m_client->refusedFingerprint();
    if (event.connectionFault != ZySendResult::ConnectionFault::None)
        feed(event);
}

void SendWorker::onConnected()
{
    m_connectWatch.stop();
    // The file may have gone or changed since the last attempt.
    if (feedFileFault())
        return;
    QFile file(m_job.path);
    SendEvent event{SendEvent::Connected};
    event.key = m_client->getFileKey(file);
    if (m_digest) {
        m_digest->update();
        event.isReading = !m_digest->isReady();
    }
    feed(event);
}

void SendWorker::onRead(qint64 done)
{
    if (m_machine->state() != SendMachine::State::Reading)
        return;
    if (!m_digest->isReady())
        Q_EMIT reading(done, m_size);
    else if (!feedFileFault())
        feed({SendEvent::FileRead});
}

/// -1 and -2 are the client's own: it could not read the file before the offer, or after it. In all
/// other cases a reply follows, which says more.
void SendWorker::onTransferError(int code)
{
    if (code >= 0 || feedFileFault() || code == -2)
        return;
    SendEvent event{SendEvent::FileFailed};
    event.fileFault = ZySendResult::FileFault::Unreadable;
    feed(event);
}

void SendWorker::onReply(const QJsonObject &reply)
{
    const QString word = reply.value(keys::cmd).toString();
    SendEvent event;
    event.key = reply.value(keys::key).toString();
    if (word == commands::startData) {
        if (feedSizeChange())
            return;
        event.kind = SendEvent::Acknowledged;
        event.offset = transferOffset();
        event.window = transferWindow();
        event.bytes = decimalValue(reply.value(keys::received));
        event.code = reply.value(keys::errorcode).toInt();
        feed(event);
        pace(event.bytes);
    } else if (word == commands::checkData) {
        event.kind = SendEvent::Verdict;
        event.offset = transferOffset();
        event.code = reply.value(keys::checkstate).toInt();
        feed(event);
    } else if (word == commands::startFile
               // From a printer that cannot read what stands in its reception file's place. Where
               // it could replace that, its reply has no code either and begins no transfer.
               || (word.isEmpty() && reply.contains(keys::errorcode))) {
        onStartFileReply(reply);
    }
}

/// Keeps the client, which sends the next chunk after this slot, waiting until the limit allows it.
void SendWorker::pace(qint64 acknowledged)
{
    constexpr double msPerSecond = 1000;
    const qint64 limit = m_job.options.rateLimit();
    if (limit == 0 || m_machine->state() != SendMachine::State::Sending)
        return;
    if (!m_sincePaced.isValid()) {
        m_sincePaced.start();
        m_pacedFrom = m_client->transferOffset();
    }
    const double due = static_cast<double>(acknowledged - m_pacedFrom) * msPerSecond
        / static_cast<double>(limit);
    constexpr double longest = 1e9; // ms
    const int rest
        = static_cast<int>(std::min(due - static_cast<double>(m_sincePaced.elapsed()), longest));
    if (rest <= 0)
        return;
    // The printer does not stall meanwhile.
    m_timeLimit.start(std::min(m_timeLimit.interval(), INT_MAX - rest) + rest);
    m_restEnd.start(rest);
    if (m_rest) // after the chunk before, which it prolongs
        return;
    QEventLoop loop;
    m_rest = &loop;
    connect(&m_restEnd, &QTimer::timeout, &loop, &QEventLoop::quit);
    loop.exec();
}

void SendWorker::endRest()
{
    m_sincePaced.invalidate();
    if (m_rest)
        m_rest->quit();
}

/// A refusal comes at once; the reply that accepts comes after the transfer that it began.
void SendWorker::onStartFileReply(const QJsonObject &reply)
{
    SendEvent event;
    event.key = reply.value(keys::key).toString();
    event.code = reply.value(keys::errorcode).toInt();
    if (event.code != 0) {
        event.kind = SendEvent::Refusal;
        event.wifiState = reply.value(keys::wifistate).toInt();
    } else {
        if (feedSizeChange())
            return;
        event.kind = SendEvent::Accepted;
        event.offset = transferOffset();
        event.text = reply.value(keys::filename).toString(m_job.name);
    }
    feed(event);
}

/// True after the machine was given a fault of the local file.
bool SendWorker::feedFileFault()
{
    SendEvent event{SendEvent::FileFailed};
    event.fileFault = ZyFileSender::checkFile(m_job.path, m_job.name).fileFault();
    if (event.fileFault == ZySendResult::FileFault::None)
        return feedSizeChange();
    feed(event);
    return true;
}

/// The same for another size only. A file that was removed goes on to be sent, since it is open.
bool SendWorker::feedSizeChange()
{
    const QFileInfo info(m_job.path);
    if (!info.exists() || info.size() == m_size)
        return false;
    SendEvent event{SendEvent::FileFailed};
    event.fileFault = ZySendResult::FileFault::Changed;
    feed(event);
    return true;
}

qint64 SendWorker::transferOffset() const
{
    return m_client ? m_client->transferOffset() : -1;
}

int SendWorker::transferWindow() const
{
    return m_client ? m_client->transferWindow() : 1;
}

} // namespace zyws
