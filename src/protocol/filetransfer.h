// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What both ends agree on about a file transfer beside its messages: chunk, key, names, record.

#ifndef FILETRANSFER_H
#define FILETRANSFER_H

#include "vocabulary.h"

#include <QByteArray>
#include <QString>

namespace zyws
{

/// File bytes in one data message; only the last chunk of a file is shorter.
inline constexpr int chunkSize = 1024 * 1024;

/// The file bytes in a payload; empty when a compressed payload does not inflate.
QByteArray unpackChunk(const QByteArray &payload, bool compress);

/**
 * @p offset after @p count more bytes. Wraps around at the ends of the range, since an offset from
 * a damaged record or a hostile reply may be any number.
 */
qint64 advanced(qint64 offset, qint64 count);

/// How many of a file's last bytes fileKey() wants.
inline constexpr qint64 fileKeyTail = 8;

/**
 * The key of a file, from its last bytes, by which both ends recognise it after a dropped
 * connection.
 *
 * @param tail the last eight bytes of the file, or the whole file when it is shorter. Bytes 4 to 7
 *        (missing ones count as 0) make a little-endian signed 32-bit number, which is widened to
 *        64 bits and written in lower-case hexadecimal without leading zeros.
 */
QString fileKey(const QByteArray &tail);

/// What a printer receives into. Deliberate spelling: printers look for it when they resume.
inline constexpr QLatin1String temporaryFileName = literal("wifi_tranfer.tmp");

enum class NameFault {
    None,
    Empty,
    Separator, ///< '/' or '\'
    Directory, ///< "." or ".."
    ControlCharacter,
    Reserved, ///< temporaryFileName in any letter case: the model would be lost on completion
    TooLong, ///< more than 255 bytes of UTF-8
};

/// None for a plain name, which leads neither out of the printer's directory nor into its own file.
NameFault nameFault(const QString &name);

/// QDataStream version of everything that goes to a file (Qt 5.12's format, big-endian).
inline constexpr int fileStreamVersion = 18;

/**
 * How much of a file is ever read in search of a record: far more than a real record needs, and
 * little enough that a crafted string length costs nothing.
 */
inline constexpr qint64 resumeRecordLimit = Q_INT64_C(1024) * 1024;

/// What the printer remembers of an interrupted transfer; stands in the temporary file right after
/// the announced size. No magic, no checksum.
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

#endif // FILETRANSFER_H
