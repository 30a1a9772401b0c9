// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a transfer leaves on disk: the resume record at the end of the temporary file, and the files
// of earlier transfers, which the next one deletes.

#include "envelope.h"
#include "filetransfer.h"
#include "serverlog.h"
#include "vocabulary.h"
#include "zyfiletranshandle.h"

#include <QDir>

namespace keys = zyws::keys;

void ZyFileTransHandle::saveKeyInfo()
{
    if (!m_file.isOpen() && !m_file.open(QIODevice::ReadWrite))
        return;
    appendRecord();
    m_file.close();
}

/// To the temporary file, which is open.
void ZyFileTransHandle::appendRecord()
{
    // The sender does not repeat what a full disk did not take, and what it sent after that lies
    // in the wrong place. So a resume goes on from there.
    const qint64 received = m_lostFrom.value_or(m_transOffset);
    m_file.seek(m_transFileSize);
    m_file.write(zyws::packResumeRecord({m_transFileSize, received, m_fileName, m_key}));
}

QJsonObject ZyFileTransHandle::getKeyInfo()
{
    if (!m_file.isOpen() && !m_file.open(QIODevice::ReadOnly))
        return {};
    m_file.seek(m_transFileSize);
    const zyws::ResumeRecord record
        = zyws::unpackResumeRecord(m_file.read(zyws::resumeRecordLimit));
    m_file.close();
    m_transFileSize = record.size;
    m_transOffset = record.received;
    m_fileName = record.filename;
    m_key = record.key;
    // Deliberate: the label names the size, the number is the received count.
    qCDebug(lcZyServer) << "m_transFileSize" << m_transOffset << m_key;
    return {
        {keys::cmd, commandWord(START_FILE)},
        {keys::key, m_key},
        {keys::filename, m_fileName},
        {keys::size, zyws::decimal(m_transFileSize)},
        {keys::offset, zyws::decimal(m_transOffset)},
    };
}

void ZyFileTransHandle::removePcModelFile(QString dir)
{
    QDir directory(dir);
    const QFileInfoList entries = directory.entryInfoList(QDir::Files);
    for (const QFileInfo &entry : entries) {
        const QString path = entry.filePath();
        if (!path.endsWith(QLatin1String(".zydlp")) && !path.endsWith(QLatin1String(".zyline"))
            && !path.endsWith(QLatin1String(".bak")))
            continue;
        qCDebug(lcZyServer).noquote() << path;
        directory.remove(path);
        qCDebug(lcZyServer) << "wifi remove file: " << path;
    }
}
