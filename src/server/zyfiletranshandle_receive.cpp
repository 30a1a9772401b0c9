// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// File reception: START_FILE, data messages, CANCEL_FILE.

#include "digest.h"
#include "envelope.h"
#include "filetransfer.h"
#include "handleguard.h"
#include "report.h"
#include "vocabulary.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <QDataStream>
#include <QDir>
#include <QWebSocket>

#include <utility>

namespace keys = zyws::keys;

void ZyFileTransHandle::startFile(QJsonObject request)
{
    const QString size = request.value(keys::size).toString();

    const HandleGuard guard(this);
    int answer = m_server->getFileTransStatus(request.value(keys::token).toString(),
                                              request.contains(keys::token));
    if (!guard.isServing())
        return;
    const bool isApart = m_server->options().keepsTransfersApart();
    // Deliberate: even a refused request sets the size that this handle's reception ends at.
    if (!isApart || !m_isReceiving)
        m_transFileSize = size.toLongLong(nullptr, 10);
    if (answer == zyws::Allowed && !hasSpaceFor(m_transFileSize))
        answer = zyws::Refused;
    if (answer != zyws::Allowed) {
        sendMessage(transferRefusal(answer));
        return;
    }

    m_isStarting = isApart;
    zyws::report(m_server->options(), ZyServerOptions::Transfer::Accepted,
                 request.value(keys::filename).toString(), m_peer);
    Q_EMIT fileTranStart();
    if (!guard.isServing())
        return;
    m_isStarting = false;
    beginReception(request);
}

/// Resumes, or makes the temporary file anew, and answers.
void ZyFileTransHandle::beginReception(const QJsonObject &request)
{
    const QString size = request.value(keys::size).toString();
    const QString key = request.value(keys::key).toString();
    QJsonObject reply{
        {keys::cmd, commandWord(START_FILE)},
        {keys::errorcode, NO_ERROR},
        {keys::compress, m_isCompress},
    };
    QDir::setCurrent(m_fileDir);
    if (m_server->options().checksDigest())
        m_digest->expect(request.value(keys::sha256).toString().toLatin1());
    // Deliberate spelling: a resume looks for this name on disk.
    m_tmpFileName = zyws::temporaryFileName;
    m_file.setFileName(m_tmpFileName);
    m_isCompleted = false;
    const QString name = request.value(keys::filename).toString();
    if (m_file.exists() && resumeReception(request, reply))
        return;
    if (!createTemporaryFile(size)) {
        reply.insert(keys::errorcode, FILE_BUSY);
        sendMessage(reply);
        return;
    }
    m_transFileSize = size.toLongLong(nullptr, 10);
    m_transOffset = 0;
    m_lostFrom.reset();
    m_key = key;
    m_fileName = name;
    if (!secureStorage()) {
        sendMessage(transferRefusal(zyws::Refused));
        return;
    }
    removePcModelFile(m_fileDir);
    m_isReceiving = true;
    // Deliberate: added to the reply as it is. One that began as a record which did not match has
    // no "errorcode"; one that began as an unreadable record has no "cmd" either.
    reply.insert(keys::filename, m_fileName);
    reply.insert(keys::size, size);
    reply.insert(keys::offset, zyws::decimal(0));
    reply.insert(keys::key, key);
    sendAcceptance(request, reply);
}

/// Answers with the resume record when its key is that of @p request. Replaces @p reply by the
/// record even when it does not match.
bool ZyFileTransHandle::resumeReception(const QJsonObject &request, QJsonObject &reply)
{
    const QString key = request.value(keys::key).toString();
    const QString name = request.value(keys::filename).toString();
    if (m_server->options().keepsTransfersApart() && !hasWholeRecord(key)
        && !restoreRecord(key, name))
        return false;
    reply = getKeyInfo();
    reply.insert(keys::compress, m_isCompress);
    if (reply.value(keys::key).toString() != key)
        return false;
    sendAcceptance(request, reply);
    m_lostFrom.reset();
    m_recordedOffset = m_transOffset;
    m_isReceiving = true;
    removePcModelFile(m_fileDir);
    return true;
}

/// Names a window to senders that ask for one; deployed ones see the deployed reply.
void ZyFileTransHandle::sendAcceptance(const QJsonObject &request, QJsonObject reply)
{
    const int window = m_server->options().window();
    if (window > 1 && request.contains(keys::window))
        reply.insert(keys::window, window);
    sendMessage(reply);
}

bool ZyFileTransHandle::createTemporaryFile(const QString &size)
{
    if (!m_file.open(QIODevice::WriteOnly))
        return false;
    m_file.close();
    return m_file.resize(size.toLongLong(nullptr, 10));
}

void ZyFileTransHandle::processBinary(QByteArray message)
{
    if (!m_isReceiving)
        return;
    const bool isWritten = writeChunk(message);
    sendMessage({
        {keys::cmd, commandWord(START_DATA)},
        {keys::key, m_key},
        {keys::errorcode, isWritten ? NO_ERROR : FILE_BUSY},
        {keys::size, zyws::decimal(m_transFileSize)},
        {keys::received, zyws::decimal(m_transOffset)},
    });
    // The peer need wait neither for the disk nor for a chunk that has arrived meanwhile.
    if (m_socket)
        m_socket->flush();
    if (m_transOffset >= m_transFileSize)
        completeReception();
    else
        keepRecord();
}

/// False only when the temporary file cannot be opened, or nothing could be written for an option's
/// sake: a short write shows in the count alone.
bool ZyFileTransHandle::writeChunk(const QByteArray &message)
{
    if (!m_file.isOpen() && !openForData()) {
        noteLoss(m_transOffset);
        return false;
    }
    m_file.seek(m_transOffset);
    QDataStream stream(&m_file);
    stream.setVersion(zyws::fileStreamVersion);
    const std::optional<QByteArray> chunk = unpacked(message);
    if (!chunk)
        return false;
    const QByteArray &bytes = *chunk;
    const int written = stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
    if (m_lostFrom) // so this chunk is written to the wrong place
        noteLoss(m_transOffset);
    else if (written < bytes.size()) {
        noteLoss(zyws::advanced(m_transOffset, qMax(written, 0)));
        zyws::report(m_server->options(), ZyServerOptions::Failure::NotWritten,
                     m_fileName + QStringLiteral(": ") + m_file.errorString());
    }
    m_transOffset = zyws::advanced(m_transOffset, written);
    m_digest->follow(m_file, qMin(m_transOffset, m_transFileSize));
    return true;
}

/// Nothing for a data message that the options do not let through.
std::optional<QByteArray> ZyFileTransHandle::unpacked(const QByteArray &message)
{
    const int limit = m_server->options().maxChunk();
    if (limit == 0)
        return zyws::unpackChunk(message, m_isCompress);
    std::optional<QByteArray> chunk = zyws::unpackChunkWithin(message, m_isCompress, limit);
    if (!chunk) // a sender that goes on nevertheless sends to the wrong place
        noteLoss(m_transOffset);
    return chunk;
}

/// From @p position on the temporary file does not hold what was sent.
void ZyFileTransHandle::noteLoss(qint64 position)
{
    m_lostFrom = qMin(m_lostFrom.value_or(position), position);
}

bool ZyFileTransHandle::openForData()
{
    // Unbuffered: only what the file system has accepted is acknowledged.
    QIODevice::OpenMode mode = QIODevice::ReadWrite | QIODevice::Unbuffered;
    // If the file was deleted, a new one would have a hole in place of the data received so far.
    if (m_transOffset > 0)
        mode |= QIODevice::ExistingOnly;
    return m_file.open(mode);
}

void ZyFileTransHandle::completeReception()
{
    if (!isUndamaged()) {
        constexpr int wrongDigest = -1;
        finishReception(wrongDigest);
        return;
    }
    storeFile();
    m_isCompleted = true;

    const HandleGuard guard(this);
    int checkState = 0;
    Q_EMIT finish(m_file.fileName(), checkState);
    if (guard.isServing())
        finishReception(checkState);
}

void ZyFileTransHandle::finishReception(int checkState)
{
    sendMessage({
        {keys::cmd, commandWord(CHECK_DATA)},
        {keys::key, m_key},
        {keys::checkstate, checkState},
    });
    m_isReceiving = false;
}

void ZyFileTransHandle::storeFile()
{
    if (m_server->options().syncsToDisk()) {
        storeDurably();
        return;
    }
    m_file.close();
    m_file.resize(m_transFileSize);
    QFile::remove(m_fileName);
    m_file.rename(m_fileName);
}

void ZyFileTransHandle::cancelFile(QJsonObject request)
{
    request.insert(keys::cmd, commandWord(CANCEL_FILE));
    request.insert(keys::errorcode, NO_ERROR);
    // Then the file is another connection's, or finished, or the one being printed.
    if (m_server->options().keepsTransfersApart() && (!m_isReceiving || m_isCompleted))
        m_file.setFileName({});
    const bool wasReceiving = std::exchange(m_isReceiving, false);
    if (m_file.exists()) {
        // Deliberate: the counters are reset only when the file was open.
        if (m_file.isOpen()) {
            m_file.close();
            m_transFileSize = 0;
            m_transOffset = 0;
        }
        m_file.remove();
    }
    sendMessage(request);
    zyws::report(m_server->options(), ZyServerOptions::Transfer::Cancelled,
                 wasReceiving ? m_fileName : QString(), m_peer);
    Q_EMIT cancle();
}
