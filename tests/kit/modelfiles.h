// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// File contents and files for transfers.

#ifndef MODELFILES_H
#define MODELFILES_H

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace zytest
{

/// File bytes in one data message.
inline constexpr int chunkBytes = 1048576;

/// @p size bytes that deflate to next to nothing, like the layers of a model. Different @p seed,
/// different bytes.
QByteArray compressibleBytes(qint64 size, quint32 seed = 1);

/// @p size bytes that do not deflate at all.
QByteArray randomBytes(qint64 size, quint32 seed = 1);

/// @p contents cut into chunks of 1 MiB.
QList<QByteArray> chunksOf(const QByteArray &contents);

/// Writes @p contents to @p path; ends the test program when that fails. Returns @p path.
QString writeFile(const QString &path, const QByteArray &contents);

/// The contents of @p path; null when it cannot be opened.
QByteArray readFile(const QString &path);

/// Names of everything in @p dir, hidden entries included, sorted.
QStringList entriesOf(const QString &dir);

} // namespace zytest

#endif // MODELFILES_H
