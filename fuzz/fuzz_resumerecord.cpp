// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A resume record of unknown origin: parsed, and met by the printer in its temporary file.
//
// An input's first line is the announced size, a space, and the key of the request, '=' for the
// record's own; what follows is the temporary file.

#include "filetransfer.h"
#include "fuzzedprinter.h"
#include "fuzztarget.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

zyws::ResumeRecord recordIn(const QByteArray &file, qint64 at)
{
    const bool isInside = at >= 0 && at <= file.size();
    return zyws::unpackResumeRecord(isInside ? file.mid(int(at)) : QByteArray());
}

void checkRoundTrip(const zyws::ResumeRecord &record)
{
    const zyws::ResumeRecord again = zyws::unpackResumeRecord(zyws::packResumeRecord(record));
    fuzzing::require(again.size == record.size && again.received == record.received
                         && again.filename == record.filename && again.key == record.key,
                     "a record changes when it is written again");
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(content);
}

QByteArray startFile(const QByteArray &size, const QString &key)
{
    const QJsonObject request{
        {QStringLiteral("cmd"), QStringLiteral("START_FILE")},
        {QStringLiteral("filename"), QStringLiteral("model.zydlp")},
        {QStringLiteral("size"), QString::fromLatin1(size)},
        {QStringLiteral("key"), key},
    };
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = fuzzing::bytesOf(data, size);
    const auto lineEnd = input.indexOf('\n');
    const auto space = input.indexOf(' ');
    if (space < 0 || lineEnd < space)
        return 0;
    const QByteArray announced = input.left(space);
    const QByteArray key = input.mid(space + 1, lineEnd - space - 1);
    const QByteArray file = input.mid(lineEnd + 1);
    const zyws::ResumeRecord record = recordIn(file, announced.toLongLong());
    checkRoundTrip(zyws::unpackResumeRecord(file));
    if (!fuzzing::staysInside(record.filename))
        return 0;

    fuzzing::FuzzedPrinter &printer = fuzzing::FuzzedPrinter::instance();
    printer.begin(1);
    write(printer.path(QStringLiteral("wifi_tranfer.tmp")), file);
    printer.text(startFile(announced, key == "=" ? record.key : QString::fromUtf8(key)));
    printer.binary(qCompress("some bytes"));
    printer.end(); // which writes the record anew
    return 0;
}
