// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The resume record: what the printer remembers of an interrupted transfer, as bytes.

#include "resumerecord.h"

#include <QDataStream>

namespace zyws
{

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
