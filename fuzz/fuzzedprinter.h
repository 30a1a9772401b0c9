// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A real server with one real connection, for targets that feed it messages.

#ifndef FUZZEDPRINTER_H
#define FUZZEDPRINTER_H

#include <QTemporaryDir>
#include <QWebSocket>

#include <functional>
#include <memory>

#include <zysslechoserver.h>

namespace fuzzing
{

/**
 * With all protection where ZYFUZZ_HARDENED is defined.
 *
 * Each input gets its own connection and an empty receive directory: what it does depends on
 * nothing before it.
 */
class FuzzedPrinter
{
public:
    /// The one printer of the process.
    static FuzzedPrinter &instance();

    /// Empties the receive directory and connects. @p hostAnswer is what the host says to anything.
    void begin(int hostAnswer);
    /// A text message. Dropped when it names a file outside the receive directory: such names are
    /// obeyed, and this machine's files are not to be deleted.
    void text(const QByteArray &message);
    void binary(const QByteArray &payload);
    /// Returns once the server has handled all that was sent.
    void settle();
    /// The peer leaves without a word; returns once the server is rid of it.
    void end();

    QString path(const QString &name) const { return m_dir.filePath(name); }

    /// Called with each finished file's path; null to ignore them.
    std::function<void(const QString &)> onFinished;

    /// True for a data message that the printer does not write for its size alone.
    static bool refuses(const QByteArray &inflated);

private:
    FuzzedPrinter();

    void connectHost();
    bool hasConnection() const;

    QTemporaryDir m_dir;
    std::unique_ptr<ZySslEchoServer> m_server;
    std::unique_ptr<QWebSocket> m_peer;
    int m_hostAnswer = 0;
};

/// False for a name that leads out of the directory it is taken relative to.
bool staysInside(const QString &fileName);

} // namespace fuzzing

#endif // FUZZEDPRINTER_H
