// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whether a received file is the one that its sender has.

#include "digest.h"

#include <QFile>

namespace zyws
{

namespace
{

/// Of a resumed file's beginning, with each data message.
constexpr qint64 atOnce = Q_INT64_C(4) * 1024 * 1024;

} // namespace

void Digest::expect(const QByteArray &expected)
{
    m_expected = expected.toLower();
    m_hash.reset();
    if (!m_expected.isEmpty())
        m_hash.emplace();
    m_hashed = 0;
}

void Digest::follow(QFile &file, qint64 received)
{
    if (m_hash)
        take(file, qMin(received, m_hashed + atOnce));
}

bool Digest::matches(QFile &file, qint64 size)
{
    if (!m_hash)
        return true;
    take(file, size);
    return m_hashed == size && m_hash->hexResult() == m_expected;
}

void Digest::take(QFile &file, qint64 end)
{
    file.seek(m_hashed);
    while (m_hashed < end) {
        const QByteArray piece = file.read(qMin(Sha256::pieceSize, end - m_hashed));
        if (piece.isEmpty())
            return;
        m_hash->add(piece);
        m_hashed += piece.size();
    }
}

} // namespace zyws
