// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Files of random bytes to be sent, and their comparison.

#ifndef TESTFILE_H
#define TESTFILE_H

#include <QByteArray>
#include <QString>

constexpr qint64 mebibyte = 1024 * 1024;

/// Writes @p size random bytes to @p path and returns them; nothing when that failed.
QByteArray writeRandomFile(const QString &path, qint64 size);
QByteArray contentOf(const QString &path);

#endif // TESTFILE_H
