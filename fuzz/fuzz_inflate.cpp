// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Compressed chunks: unpackChunk() against qUncompress(), bytes and warnings. libdeflate may read
// what zlib refuses, then in the announced size; it may not read anything differently.

#include "filetransfer.h"
#include "fuzztarget.h"

#include <QtEndian>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray payload = fuzzing::bytesOf(data, size);
    if (!fuzzing::isBearable(payload))
        return 0;
    fuzzing::takeWarnings();
    const QByteArray expected = qUncompress(payload);
    const QStringList expectedWarnings = fuzzing::takeWarnings();
    const QByteArray actual = zyws::unpackChunk(payload, true);
    const QStringList actualWarnings = fuzzing::takeWarnings();
    if (expected.isNull() && !actual.isNull()) {
        fuzzing::require(actual.size() == int(qFromBigEndian<quint32>(payload.constData())),
                         "refused by qUncompress(), and not of the announced size");
        return 0;
    }
    fuzzing::require(actual == expected, "other bytes than qUncompress()");
    fuzzing::require(actual.isNull() == expected.isNull(), "another emptiness than qUncompress()");
    fuzzing::require(actualWarnings == expectedWarnings, "other warnings than qUncompress()");
    return 0;
}
