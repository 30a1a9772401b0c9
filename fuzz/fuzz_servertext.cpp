// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Text messages to the printer.
//
// An input's first byte is the host's answer to everything ('y'es, 'n'o, 't'oken rejected, 'w'rong
// number), each line after it a text message; a line that begins with '#' is a data message of
// the bytes after that sign.

#include "filetransfer.h"
#include "fuzzedprinter.h"
#include "fuzztarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    static constexpr int answers[] = {-1, 1, 0, 2}; // by the last two bits of t, y, n, w
    const QByteArray input = fuzzing::bytesOf(data, size);
    fuzzing::FuzzedPrinter &printer = fuzzing::FuzzedPrinter::instance();
    printer.begin(answers[data[0] & 3]);
    const QList<QByteArray> lines = input.mid(1).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith('#'))
            printer.binary(qCompress(line.mid(1)));
        else
            printer.text(line);
    }
    printer.end();
    return 0;
}
