// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads a file for its SHA-256 digest in the gaps that the thread's event loop leaves.

#include "filedigest.h"

#include <QFileInfo>

#include <utility>

namespace zyws
{

namespace
{

constexpr int progressInterval = 250; // ms

} // namespace

FileDigest::FileDigest(const QString &path, Progress progress)
    : m_file(path), m_progress(std::move(progress))
{
    QObject::connect(&m_gaps, &QTimer::timeout, &m_gaps, [this] { readOn(); });
}

void FileDigest::update()
{
    const QDateTime modified = QFileInfo(m_file.fileName()).lastModified();
    if (m_modified.isValid() && modified == m_modified)
        return;
    m_modified = modified;
    m_isReady = false;
    m_hash.reset();
    m_file.close();
    m_sinceProgress.start();
    // What cannot be opened ends in the first gap.
    m_file.open(QIODevice::ReadOnly);
    m_gaps.start(0);
}

void FileDigest::readOn()
{
    const QByteArray piece = m_file.isOpen() ? m_file.read(Sha256::pieceSize) : QByteArray();
    if (!piece.isEmpty()) {
        m_hash.add(piece);
        if (m_sinceProgress.hasExpired(progressInterval)) {
            m_sinceProgress.start();
            m_progress(m_file.pos());
        }
    } else {
        const bool isWhole = m_file.isOpen() && m_file.error() == QFile::NoError;
        end(isWhole ? m_hash.hexResult() : QByteArray());
    }
}

void FileDigest::end(const QByteArray &hex)
{
    m_gaps.stop();
    m_isReady = true;
    m_hex = hex;
    const qint64 size = m_file.pos();
    m_file.close();
    m_progress(size);
}

} // namespace zyws
