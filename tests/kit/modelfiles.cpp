// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// File contents and files for transfers.

#include "modelfiles.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

namespace zytest
{

QByteArray compressibleBytes(qint64 size, quint32 seed)
{
    // Long runs whose value and length follow from the seed.
    QRandomGenerator generator(seed);
    QByteArray bytes;
    bytes.reserve(static_cast<int>(size));
    while (bytes.size() < size) {
        const int run = generator.bounded(200, 4000);
        bytes.append(qMin(run, static_cast<int>(size) - bytes.size()),
                     static_cast<char>(generator.bounded(256)));
    }
    return bytes;
}

QByteArray randomBytes(qint64 size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(generator.bounded(256));
    return bytes;
}

QList<QByteArray> chunksOf(const QByteArray &contents)
{
    QList<QByteArray> chunks;
    for (int at = 0; at < contents.size(); at += chunkBytes)
        chunks.append(contents.mid(at, chunkBytes));
    return chunks;
}

QString writeFile(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("Cannot write %s", qPrintable(path));
    return path;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList entriesOf(const QString &dir)
{
    return QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace zytest
