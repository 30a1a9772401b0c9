// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// File reception: START_FILE, data messages, CANCEL_FILE.

#include "envelope.h"
#include "filetransfer.h"
#include "handleguard.h"
#include "vocabulary.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <QDataStream>
#include <QDir>

namespace keys = zyws::keys;

void ZyFileTransHandle::startFile(QJsonObject request)
{
    const QString size = request.value(keys::size).toString();
    const QString key = request.value(keys::key).toString();

    const HandleGuard guard(this);
    const int answer = m_server->getFileTransStatus(request.value(keys::token).toString(),
                                                    request.contains(keys::token));
    if (!guard.isServing())
        return;
    QJsonObject reply{
        {keys::cmd, commandWord(START_FILE)},
        {keys::errorcode, NO_ERROR},
        {keys::compress, m_isCompress},
    };
    // Deliberate: even a refused request sets the size that this handle's reception ends at.
    m_transFileSize = size.toLongLong(nullptr, 10);
    if (answer != zyws::Allowed) {
        reply.insert(keys::errorcode, answer == zyws::TokenRejected ? TOKEN_ERROR : SERVER_BUSY);
        reply.insert(keys::wifistate, answer);
        sendMessage(reply);
        return;
    }

    Q_EMIT fileTranStart();
    if (!guard.isServing())
        return;
    QDir::setCurrent(m_fileDir);
    // Deliberate spelling: a resume looks for this name on disk.
    m_tmpFileName = zyws::temporaryFileName;
    m_file.setFileName(m_tmpFileName);
    m_isCompleted = false;
    if (m_file.exists() && resumeReception(key, reply))
        return;
    if (!createTemporaryFile(size)) {
        reply.insert(keys::errorcode, FILE_BUSY);
        sendMessage(reply);
        return;
    }
    removePcModelFile(m_fileDir);
    m_transFileSize = size.toLongLong(nullptr, 10);
    m_transOffset = 0;
    m_lostFrom.reset();
    m_key = key;
    m_isReceiving = true;
    m_fileName = request.value(keys::filename).toString();
    // Deliberate: added to the reply as it is. One that began as a record which did not match has
    // no "errorcode"; one that began as an unreadable record has no "cmd" either.
    reply.insert(keys::filename, m_fileName);
    reply.insert(keys::size, size);
    reply.insert(keys::offset, zyws::decimal(0));
    reply.insert(keys::key, key);
    sendMessage(reply);
}

/// Answers with the resume record when its key is @p key. Replaces @p reply by the record even when
/// it does not match.
bool ZyFileTransHandle::resumeReception(const QString &key, QJsonObject &reply)
{
    reply = getKeyInfo();
    reply.insert(keys::compress, m_isCompress);
    if (reply.value(keys::key).toString() != key)
        return false;
    sendMessage(reply);
    m_lostFrom.reset();
    m_isReceiving = true;
    removePcModelFile(m_fileDir);
    return true;
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
    if (m_transOffset >= m_transFileSize)
        completeReception();
}

/// False only when the temporary file cannot be opened: a short write shows in the count alone.
bool ZyFileTransHandle::writeChunk(const QByteArray &message)
{
    if (!m_file.isOpen() && !openForData()) {
        noteLoss(m_transOffset);
        return false;
    }
    m_file.seek(m_transOffset);
    QDataStream stream(&m_file);
    stream.setVersion(zyws::fileStreamVersion);
    const QByteArray bytes = zyws::unpackChunk(message, m_isCompress);
    const int written = stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
    if (m_lostFrom) // so this chunk is written to the wrong place
        noteLoss(m_transOffset);
    else if (written < bytes.size())
        noteLoss(zyws::advanced(m_transOffset, qMax(written, 0)));
    m_transOffset = zyws::advanced(m_transOffset, written);
    return true;
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
    m_file.close();
    m_file.resize(m_transFileSize);
    QFile::remove(m_fileName);
    m_file.rename(m_fileName);
    m_isCompleted = true;

    const HandleGuard guard(this);
    int checkState = 0;
    Q_EMIT finish(m_file.fileName(), checkState);
    if (!guard.isServing())
        return;
    sendMessage({
        {keys::cmd, commandWord(CHECK_DATA)},
        {keys::key, m_key},
        {keys::checkstate, checkState},
    });
    m_isReceiving = false;
}

void ZyFileTransHandle::cancelFile(QJsonObject request)
{
    request.insert(keys::cmd, commandWord(CANCEL_FILE));
    request.insert(keys::errorcode, NO_ERROR);
    m_isReceiving = false;
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
    Q_EMIT cancle();
}
