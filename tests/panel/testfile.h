// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Files of random bytes to be sent, and their comparison.

#ifndef TESTFILE_H
#define TESTFILE_H

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

constexpr qint64 mebibyte = 1024 * 1024;

/// Writes @p size random bytes to @p path and returns them; nothing when that failed.
QByteArray writeRandomFile(const QString &path, qint64 size);
QByteArray contentOf(const QString &path);

/// A file of random bytes in a directory of its own.
class RandomFile
{
public:
    /// Writes the file anew and returns its path.
    QString create(qint64 size);
    const QByteArray &content() const { return m_content; }

private:
    QTemporaryDir m_directory;
    QByteArray m_content;
};

#endif // TESTFILE_H
