// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Messages that no honest peer sends, made from valid ones and from chance.

#ifndef MALFORMED_H
#define MALFORMED_H

#include <QByteArray>
#include <QByteArrayList>
#include <QRandomGenerator>
#include <QString>

namespace zytest
{

/**
 * The same seed gives the same messages.
 *
 * No text ever holds a path separator: the protocol lets a peer name files anywhere, and a test
 * must not touch those of the machine that it runs on.
 */
class Malformed
{
public:
    Malformed(quint32 seed, QByteArrayList validTexts);

    /// A damaged message, JSON of the wrong shape, or no JSON at all.
    QString text();
    /// A payload that is not, or not quite, a compressed chunk.
    QByteArray binary();
    /// Bytes in place of frames: random ones, or a header that lies. A client's are masked.
    QByteArray frames(bool isClient);

private:
    int below(int limit) { return static_cast<int>(m_random.bounded(limit)); }
    QByteArray randomBytes(int largest);
    QByteArray damaged(QByteArray bytes);
    QByteArray retyped(const QByteArray &text);
    QByteArray randomJson(int depth);
    QByteArray randomScalar();

    QRandomGenerator m_random;
    QByteArrayList m_validTexts;
};

} // namespace zytest

#endif // MALFORMED_H
