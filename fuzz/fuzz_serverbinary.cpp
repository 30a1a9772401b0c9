// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Binary messages to the printer while it receives.
//
// An input's first line is the announced size; then come data messages: 'c' or another letter, two
// bytes of length, high one first, and so many bytes, which are compressed for 'c' and sent as they
// are otherwise.

#include "filetransfer.h"
#include "fuzzedprinter.h"
#include "fuzztarget.h"

#include <QFile>
#include <QtEndian>

namespace
{

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr int frameSize = 3;

/// The next data message; takes it from @p input.
QByteArray takePayload(QByteArray &input)
{
    const bool isPacked = input.startsWith('c');
    const int length = qFromBigEndian<quint16>(input.constData() + 1);
    const QByteArray bytes = input.mid(frameSize, length);
    input.remove(0, frameSize + length);
    return isPacked ? qCompress(bytes) : bytes;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray input(reinterpret_cast<const char *>(data), int(size));
    const auto lineEnd = input.indexOf('\n');
    bool isNumber = false;
    const qint64 announced = input.left(lineEnd).toLongLong(&isNumber);
    if (lineEnd < 0 || !isNumber || announced < 1 || announced > largestFile)
        return 0;
    input.remove(0, lineEnd + 1);

    QByteArray expected;
    bool isFinished = false;
    fuzzing::FuzzedPrinter &printer = fuzzing::FuzzedPrinter::instance();
    printer.onFinished = [&](const QString &path) {
        isFinished = true;
        fuzzing::require(contentOf(path) == expected.left(int(announced)),
                         "the finished file is not what was sent");
    };
    printer.begin(1);
    printer.text("{\"cmd\":\"START_FILE\",\"filename\":\"m\",\"key\":\"k\",\"size\":\""
                 + QByteArray::number(announced) + "\"}");
    while (input.size() >= frameSize && expected.size() < announced) {
        const QByteArray payload = takePayload(input);
        if (!fuzzing::isBearable(payload))
            continue;
        const QByteArray inflated = qUncompress(payload);
        if (!fuzzing::FuzzedPrinter::refuses(inflated))
            expected += inflated;
        printer.binary(payload);
    }
    printer.settle();
    fuzzing::require(isFinished == (expected.size() >= announced),
                     "finished too early or not at all");
    printer.end();
    printer.onFinished = nullptr;
    return 0;
}
