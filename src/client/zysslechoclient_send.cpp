// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// File sending: the file key, START_FILE, the send loop, cancel.

#include "clientlog.h"
#include "envelope.h"
#include "filetransfer.h"
#include "heldsocket.h"
#include "lookahead.h"
#include "vocabulary.h"
#include "wakeafterwards.h"
#include "zysslechoclient.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QScopedValueRollback>
#include <QThread>
#include <QTimer>

#include <exception>
#include <memory>

static_assert(ZySslEchoClient::Adaptive == zyws::adaptiveLevel);

namespace
{

/// Bytes that the system has not taken yet, where a window was asked for. A printer that
/// acknowledges what it has not read would otherwise have the whole file pile up in memory.
constexpr qint64 mostUnsent = Q_INT64_C(4) * zyws::chunkSize;

} // namespace

namespace commands = zyws::commands;
namespace keys = zyws::keys;

void ZySslEchoClient::sendFile(QString filePath, QString fileName)
{
    try {
        QFile file(filePath);
        if (!sendFileStart(file, fileName))
            Q_EMIT transError(-1, QString());
    } catch (const std::exception &) {
        // Deliberate: hosts know failures as signals only.
    }
}

bool ZySslEchoClient::sendFileStart(QFile &file, QString fileName)
{
    const QString key = getFileKey(file);
    if (key.isEmpty())
        return false;
    m_keyFileMap.insert(key, file.fileName());
    QJsonObject request{
        {keys::cmd, commands::startFile},
        {keys::filename, fileName},
        {keys::size, zyws::decimal(QFileInfo(file.fileName()).size())},
        {keys::offset, zyws::decimal(0)},
        {keys::key, key},
    };
    if (!m_fileToken.isEmpty())
        request.insert(keys::token, m_fileToken);
    if (m_window > 1)
        request.insert(keys::window, m_window);
    if (!m_fileDigest.isEmpty())
        request.insert(keys::sha256, m_fileDigest);
    sendJsonMessage(request);
    return true;
}

void ZySslEchoClient::setFileToken(const QString &token)
{
    m_fileToken = token;
}

void ZySslEchoClient::setFileDigest(const QString &sha256)
{
    m_fileDigest = sha256;
}

QString ZySslEchoClient::getFileKey(QFile &file)
{
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return {};
    const qint64 tailStart = file.size() - zyws::fileKeyTail;
    if (tailStart > 0)
        file.seek(tailStart);
    const QByteArray tail = file.read(zyws::fileKeyTail);
    file.close();
    return zyws::fileKey(tail);
}

void ZySslEchoClient::beginTransFile(QJsonObject reply)
{
    try {
        const QString key = reply.value(keys::key).toString();
        const QString filePath = m_keyFileMap.value(key);
        QFile file(filePath);
        m_chunksUnderWay = 0;
        m_isTransferring = true;
        if (!file.open(QIODevice::ReadOnly)) {
            Q_EMIT transError(-2, QString());
            qCDebug(lcZyClient) << "Can't open file for read" << filePath << key;
            // Deliberate: m_isTransferring stays set, so this client starts no further transfer.
            return;
        }
        sendFrom(file, reply);
    } catch (const std::exception &) {
        // Deliberate: hosts know failures as signals only.
    }
}

/// The client may be deleted in any event pump.
void ZySslEchoClient::sendFrom(QFile &file, const QJsonObject &reply)
{
    const zyws::WakeAfterwards wakeAfterwards;
    const QPointer<ZySslEchoClient> self(this);
    qCDebug(lcZyClient) << "start send";
    qCDebug(lcZyClient) << "_totalBytes = " << file.size();
    m_transferOffset = zyws::decimalValue(reply.value(keys::offset));
    m_transferWindow = qBound(1, reply.value(keys::window).toInt(), m_window);
    file.seek(m_transferOffset);
    m_isSending = true;
    sendChunks(file, reply.value(keys::compress).toBool(false));
    if (!self)
        return;
    qCDebug(lcZyClient) << "send end";
    m_isCanceling = false;
    m_isSending = false;
    m_isTransferring = false;
}

/// The send loop: one chunk, then its acknowledgement, or that of an earlier one where the printer
/// bears several chunks under way. While a chunk is under way, the next one is read and compressed.
void ZySslEchoClient::sendChunks(QFile &file, bool compress)
{
    const QPointer<ZySslEchoClient> self(this);
    const qint64 totalBytes = file.size();
    qint64 sentBytes = m_transferOffset;
    auto *dispatcher = QAbstractEventDispatcher::instance();
    zyws::LookAhead ahead(file, compress, [dispatcher] { dispatcher->wakeUp(); });
    const auto hasTurn = [&] {
        // Deliberate: without a window an acknowledgement alone counts, whatever is unsent.
        if (m_chunksUnderWay == 0)
            return m_window == 1 || m_isCanceling || m_webSocket.bytesToWrite() <= mostUnsent;
        return m_chunksUnderWay < m_transferWindow && m_webSocket.bytesToWrite() == 0
            && ahead.isReady() && !ahead.isAtEnd();
    };
    for (;;) {
        if (!pumpUntil(hasTurn))
            return;
        ahead.acknowledgedUpTo(m_chunksUnderWay);
        if (m_isCanceling) {
            sendJsonMessage({{keys::cmd, commands::cancelFile}});
            return;
        }
        ++m_chunksUnderWay;
        ahead.prepare({m_compressionLevel, m_compressionThreads});
        if (!pumpUntil([&ahead] { return ahead.isReady(); }))
            return;
        std::shared_ptr<zyws::ChunkJob> chunk = ahead.take();
        const int size = chunk->size();
        if (size > 0) {
            sentBytes = zyws::advanced(sentBytes, size);
            qCDebug(lcZyClient) << "sendBytes=" << sentBytes << " _totalBytes=" << totalBytes;
            m_webSocket.sendBinaryMessage(chunk->payload());
            chunk.reset(); // the socket has a copy
        }
        if (self)
            QCoreApplication::processEvents();
        if (!self || size < 1 || !m_isSending)
            return;
        if (m_compressionThreads == 0 && compress && !pumpOut())
            return;
        ahead.prepare({m_compressionLevel, m_compressionThreads});
    }
}

/// Has the system take as much of a chunk as it does at once, since compressing keeps this thread
/// from passing on the rest. False when the transfer is to end instead.
bool ZySslEchoClient::pumpOut()
{
    constexpr int longest = 3; // ms: enough for a fast line, little beside a slow one's time
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(longest);
    return pumpUntil([&] {
        return m_chunksUnderWay == 0 || m_webSocket.bytesToWrite() == 0 || !limit.isActive();
    });
}

/// Processes events until what the send loop waits for @p hasCome; false when the transfer is to
/// end instead.
bool ZySslEchoClient::pumpUntil(const std::function<bool()> &hasCome)
{
    static thread_local int waits = 0;
    const QScopedValueRollback<int> wait(waits, waits + 1);
    const QPointer<ZySslEchoClient> self(this);
    const auto isOver = [&] { return !self || !m_isSending; };
    // The dispatcher may run an event that brings what this loop waits for, and then block all the
    // same: a slot that spins the event loop uses up any wake-up. So the last look is the one right
    // before it blocks. A loop nested in this one may sleep undisturbed.
    auto *dispatcher = QAbstractEventDispatcher::instance();
    const auto wakeInTime = [&, depth = waits, level = QThread::currentThread()->loopLevel()] {
        const bool isInnermost = depth == waits && level == QThread::currentThread()->loopLevel();
        if (isInnermost && (isOver() || hasCome()))
            dispatcher->wakeUp();
    };
    const QObject scope;
    connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &scope, wakeInTime);
    while (!hasCome()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        if (isOver())
            return false;
    }
    return true;
}

void ZySslEchoClient::setCompressionLevel(int level)
{
    m_compressionLevel = level;
}

int ZySslEchoClient::compressionLevel() const
{
    return m_compressionLevel;
}

void ZySslEchoClient::setCompressionThreads(int count)
{
    m_compressionThreads = count;
}

int ZySslEchoClient::compressionThreads() const
{
    return m_compressionThreads;
}

void ZySslEchoClient::setWindow(int chunks)
{
    m_window = qBound(1, chunks, 16);
}

int ZySslEchoClient::window() const
{
    return m_window;
}

qint64 ZySslEchoClient::transferOffset() const
{
    return m_transferOffset;
}

int ZySslEchoClient::transferWindow() const
{
    return m_transferWindow;
}

void ZySslEchoClient::cancel()
{
    m_isCanceling = true;
    if (m_webSocket.state() == QAbstractSocket::UnconnectedState) {
        open(m_url);
        return;
    }
    const QPointer<ZySslEchoClient> self(this);
    sendJsonMessage({{keys::cmd, commands::cancelFile}});
    if (self)
        m_isSending = false;
}
