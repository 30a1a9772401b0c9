// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What both ends agree on about a file transfer beside its messages: chunk, key, resume record.

#include "filetransfer.h"

#include "inflate.h"

#include <QDataStream>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace zyws
{

QByteArray unpackChunk(const QByteArray &payload, bool compress)
{
    return compress ? inflated(payload) : payload;
}

qint64 advanced(qint64 offset, qint64 count)
{
    return static_cast<qint64>(static_cast<quint64>(offset) + static_cast<quint64>(count));
}

QString fileKey(const QByteArray &tail)
{
    std::array<char, fileKeyTail> bytes{};
    std::copy_n(tail.begin(), std::min<qint64>(tail.size(), fileKeyTail), bytes.begin());
    const auto signedKey = qFromLittleEndian<qint32>(bytes.data() + 4);
    // Deliberate: a last byte of 0x80 or more gives 16 digits, because deployed printers compare
    // keys as strings.
    return QString::number(static_cast<quint64>(static_cast<qint64>(signedKey)), 16);
}

NameFault nameFault(const QString &name)
{
    constexpr int longestName = 255; // bytes, on any file system of a printer
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    if (name.isEmpty())
        return NameFault::Empty;
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return NameFault::Separator;
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return NameFault::Directory;
    if (std::any_of(name.begin(), name.end(), isControl))
        return NameFault::ControlCharacter;
    if (name.compare(temporaryFileName, Qt::CaseInsensitive) == 0)
        return NameFault::Reserved;
    return name.toUtf8().size() > longestName ? NameFault::TooLong : NameFault::None;
}

QByteArray packResumeRecord(const ResumeRecord &record)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(fileStreamVersion);
    stream << record.size << record.received << record.filename << record.key;
    return bytes;
}

ResumeRecord unpackResumeRecord(const QByteArray &bytes)
{
    ResumeRecord record;
    QDataStream stream(bytes);
    stream.setVersion(fileStreamVersion);
    stream >> record.size >> record.received >> record.filename >> record.key;
    return record;
}

} // namespace zyws
