// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Files of random bytes to be sent, and their comparison.

#include "testfile.h"

#include <QFile>
#include <QRandomGenerator>

QByteArray writeRandomFile(const QString &path, qint64 size)
{
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    QRandomGenerator random(static_cast<quint32>(size));
    random.generate(bytes.begin(), bytes.end());
    QFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes) == size;
    if (!isWritten)
        qWarning("cannot write %s", qPrintable(path));
    return isWritten ? bytes : QByteArray();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString RandomFile::create(qint64 size)
{
    const QString path = m_directory.filePath(QStringLiteral("model"));
    m_content = writeRandomFile(path, size);
    return path;
}
