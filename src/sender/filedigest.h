// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Reads a file for its SHA-256 digest in the gaps that the thread's event loop leaves.

#ifndef FILEDIGEST_H
#define FILEDIGEST_H

#include "sha256.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <functional>

namespace zyws
{

/// Connecting and cancelling go on meanwhile. Of a file of 2 GiB, this takes seconds.
class FileDigest
{
public:
    /// Several times a second while it is being read, with the bytes read so far; at the end with
    /// the file's size.
    using Progress = std::function<void(qint64)>;

    FileDigest(const QString &path, Progress progress);

    /// Reads the file, unless that was done and it has not changed since.
    void update();
    /// In the thread that called update(), which may end then.
    void stop() { m_gaps.stop(); }
    bool isReady() const { return m_isReady; }
    /// 64 hex digits; empty for a file that could not be read.
    QByteArray hex() const { return m_hex; }

private:
    void readOn();
    void end(const QByteArray &hex);

    QFile m_file;
    Progress m_progress;
    QDateTime m_modified; ///< as the reading began
    Sha256 m_hash;
    QTimer m_gaps;
    QElapsedTimer m_sinceProgress;
    bool m_isReady = false;
    QByteArray m_hex;
};

} // namespace zyws

#endif // FILEDIGEST_H
