// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The resume record: what the printer remembers of an interrupted transfer, as bytes.

#ifndef RESUMERECORD_H
#define RESUMERECORD_H

#include <QByteArray>
#include <QString>

namespace zyws
{

/// QDataStream version of everything that goes to a file (Qt 5.12's format, big-endian).
inline constexpr int fileStreamVersion = 18;

/**
 * How much of a file is ever read in search of a record: far more than a real record needs, and
 * little enough that a crafted string length costs nothing.
 */
inline constexpr qint64 resumeRecordLimit = Q_INT64_C(1024) * 1024;

/// Lies in the temporary file right behind the announced size. No magic, no checksum.
struct ResumeRecord {
    qint64 size = 0; ///< announced file size in bytes
    qint64 received = 0; ///< bytes received, from the start of the file
    QString filename; ///< name under which the finished file is to be stored
    QString key; ///< file key
};

/// The bytes of @p record.
QByteArray packResumeRecord(const ResumeRecord &record);

/**
 * The record at the start of @p bytes. Fields that are missing or do not fit read as 0 and empty,
 * so the key of a damaged record matches no sender's.
 */
ResumeRecord unpackResumeRecord(const QByteArray &bytes);

} // namespace zyws

#endif // RESUMERECORD_H
