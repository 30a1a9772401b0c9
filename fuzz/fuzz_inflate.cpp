// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Compressed chunks: unpackChunk() against qUncompress(), bytes and warnings.

#include "datachunk.h"
#include "fuzztarget.h"
#include "payloadrepair.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
    // A change to the deflate data alone would never get beyond the checksum.
    return seed % 4 == 0 ? mutated : fuzzing::repairPayload(data, mutated);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray payload = fuzzing::bytesOf(data, size);
    if (!fuzzing::isBearable(payload))
        return 0;
    fuzzing::takeWarnings();
    const QByteArray expected = qUncompress(payload);
    const QStringList expectedWarnings = fuzzing::takeWarnings();
    const QByteArray actual = zyws::unpackChunk(payload, true);
    fuzzing::require(actual == expected, "other bytes than qUncompress()");
    fuzzing::require(actual.isNull() == expected.isNull(), "another emptiness than qUncompress()");
    fuzzing::require(fuzzing::takeWarnings() == expectedWarnings,
                     "other warnings than qUncompress()");
    return 0;
}
