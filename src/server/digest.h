// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a received file is the one that its sender has.

#ifndef DIGEST_H
#define DIGEST_H

#include "sha256.h"

#include <QByteArray>

#include <optional>

class QFile;

namespace zyws
{

/// The SHA-256 digest of a file that grows. Reads back what was written, so it vouches for that.
class Digest
{
public:
    /// @param expected 64 hex digits of either case; empty: nothing is to be checked.
    void expect(const QByteArray &expected);

    /// Goes on to byte @p received of @p file, but takes only a few MiB at a time, since the event
    /// loop waits: what a resumed transfer had before is caught up on with the data that follow.
    void follow(QFile &file, qint64 received);
    /// Goes on to byte @p size; false when the digest up to there is another than expected.
    bool matches(QFile &file, qint64 size);

private:
    void take(QFile &file, qint64 end);

    QByteArray m_expected;
    std::optional<Sha256> m_hash; ///< there when something is expected
    qint64 m_hashed = 0; ///< bytes from the start of the file
};

} // namespace zyws

#endif // DIGEST_H
