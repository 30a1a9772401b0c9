// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a reception with protection leaves on the disk: reserved space, a record that is kept up to
// date, a file that has reached the disk before its name.

#include "digest.h"
#include "filetransfer.h"
#include "report.h"
#include "requestguard.h"
#include "storage.h"
#include "zyfiletranshandle.h"
#include "zysslechoserver.h"

#include <cstdio>

using Failure = ZyServerOptions::Failure;

/// True when a file of @p size bytes may be received as far as the disk is concerned.
bool ZyFileTransHandle::hasSpaceFor(qint64 size) const
{
    const QString fault = zyws::spaceFault(
        m_server->options(), m_fileDir + QLatin1Char('/') + zyws::temporaryFileName, size);
    if (fault.isEmpty())
        return true;
    zyws::report(m_server->options(), Failure::NoSpace, fault);
    return false;
}

/// Reserves the space of the file about to be received and of its record, and writes the first
/// record; false, and the temporary file is gone, when there is no space.
bool ZyFileTransHandle::secureStorage()
{
    const ZyServerOptions &options = m_server->options();
    if (!options.reservesSpace() && options.recordInterval() == 0)
        return true;
    const QByteArray record
        = zyws::packResumeRecord({m_transFileSize, m_transOffset, m_fileName, m_key});
    if (!openForData())
        return true; // as deployed: the first data message says so
    const QString fault = zyws::reserveSpace(options, m_file, m_transFileSize + record.size());
    if (!fault.isEmpty()) {
        m_file.close();
        m_file.remove();
        zyws::report(options, Failure::NoSpace, fault);
        return false;
    }
    if (options.recordInterval() > 0)
        writeRecord();
    m_file.close();
    zyws::syncDirectory(options, m_fileDir);
    return true;
}

/// Brings the record up to date when enough has come since the last time.
void ZyFileTransHandle::keepRecord()
{
    const qint64 interval = m_server->options().recordInterval();
    if (interval == 0 || m_transOffset >= m_transFileSize
        || m_transOffset - m_recordedOffset < interval)
        return;
    // A record vouches for the data before it.
    if (zyws::syncFile(m_server->options(), m_file))
        writeRecord();
}

/// Unlike saveKeyInfo() leaves the temporary file open.
void ZyFileTransHandle::writeRecord()
{
    appendRecord();
    zyws::syncFile(m_server->options(), m_file);
    m_recordedOffset = m_transOffset;
}

/// True when the temporary file ends in a record of this very transfer.
bool ZyFileTransHandle::hasWholeRecord(const QString &key) const
{
    QFile file(m_tmpFileName);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_transFileSize))
        return false;
    const QByteArray bytes = file.read(zyws::resumeRecordLimit);
    return file.atEnd() && zyws::isWholeRecord(bytes, m_transFileSize, key)
        && zyws::isNameAccepted(zyws::unpackResumeRecord(bytes).filename, m_server->options(),
                                m_fileDir);
}

/// Writes the record again that a process killed while it stored the finished file had cut off; the
/// last bytes come once more. False when the temporary file is not of that kind.
bool ZyFileTransHandle::restoreRecord(const QString &key, const QString &name) const
{
    QFile file(m_tmpFileName);
    // Until then the file is longer, and before its last chunk it ends in zeros.
    if (m_server->options().recordInterval() == 0 || key == zyws::fileKey({})
        || file.size() != m_transFileSize || !file.open(QIODevice::ReadWrite)
        || !file.seek(qMax(qint64(0), m_transFileSize - zyws::fileKeyTail))
        || zyws::fileKey(file.read(zyws::fileKeyTail)) != key)
        return false;
    const qint64 received = qMax(qint64(0), m_transFileSize - zyws::chunkSize);
    file.write(zyws::packResumeRecord({m_transFileSize, received, name, key}));
    return true;
}

/// Ends a reception whose connection has ended: what the record will vouch for reaches the disk.
void ZyFileTransHandle::onReceptionInterrupted()
{
    if (!m_isCompleted && m_file.isOpen())
        zyws::syncFile(m_server->options(), m_file);
}

void ZyFileTransHandle::reportUselessFile() const
{
    const ZyServerOptions &options = m_server->options();
    if (options.failureHandler() && !m_isCompleted && !hasWholeRecord(m_key))
        options.failureHandler()(Failure::NotResumable, m_fileName);
}

/// False when the finished file is not its sender's; it is gone then.
bool ZyFileTransHandle::isUndamaged()
{
    if (m_digest->matches(m_file, m_transFileSize))
        return true;
    m_file.close();
    m_file.remove();
    zyws::report(m_server->options(), Failure::WrongDigest, m_fileName);
    return false;
}

/// Gives the temporary file its final size and name, in an order that a loss of power does not
/// reverse.
void ZyFileTransHandle::storeDurably()
{
    const ZyServerOptions &options = m_server->options();
    // Before the record is cut off, so that a process killed meanwhile still finds it.
    zyws::syncFile(options, m_file);
    m_file.resize(m_transFileSize);
    zyws::syncFile(options, m_file);
    m_file.close();
    // Unlike QFile::rename() replaces what has that name, so that one of the two is always there.
    if (std::rename(QFile::encodeName(m_tmpFileName).constData(),
                    QFile::encodeName(m_fileName).constData())
        == 0)
        m_file.setFileName(m_fileName);
    zyws::syncDirectory(options, m_fileDir);
}
