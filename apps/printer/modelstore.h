// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The models that the printer keeps, and the place where they arrive.

#ifndef MODELSTORE_H
#define MODELSTORE_H

#include <QLockFile>
#include <QString>
#include <QStringList>

namespace zyprinter
{

/**
 * Two places: models are received in ".incoming" and kept, once whole, in the directory itself.
 *
 * The library needs this of a host that keeps what it receives: each accepted transfer deletes the
 * model files in the receive directory, and CANCEL_FILE deletes the file that the connection last
 * received or printed there. Behind the library's back, a model is safe from both.
 *
 * The library writes a file under whatever name the slicer sends. A name is accepted here only if
 * it names a file right in the directory: no '/', no '.' in front, not the reception file's name.
 *
 * One process at a time uses the directory, since two would write into one reception file. It holds
 * the lock file ".zyprinter.lock" there.
 */
class ModelStore
{
public:
    explicit ModelStore(const QString &directory);

    /// Locks the directory, makes the place for incoming files and takes over those that a crash
    /// left there. Empty, or what is wrong with the directory.
    QString prepare();
    /// The files that a crash left and that could not be taken over, with the reasons, as lines for
    /// a log. They are still where they arrived.
    const QStringList &leftBehind() const { return m_leftBehind; }

    const QString &directory() const { return m_directory; }
    /// Absolute; the receive directory to be given to the server.
    const QString &incomingDirectory() const { return m_incoming; }

    /// False when the place for incoming files has gone: the server would then receive into
    /// whatever is the current directory.
    bool canReceive() const;

    /// False when @p name is that of a directory or symbolic link.
    bool isFileName(const QString &name) const;

    /// Removes what is left of a transfer that can never go on.
    void removeReception() const;

    /// Takes over the file that the server has just completed, @p receivedName being relative to
    /// incomingDirectory(). Empty, or why the file was not kept; it is deleted then.
    QString keep(const QString &receivedName);

    /// Why the model name @p name is not accepted; empty when it is.
    static QString nameFault(const QString &name);
    /// Where the model @p name lies or would lie; empty for a name that is not accepted.
    QString path(const QString &name) const;
    /// The names of the files that are kept.
    QStringList names() const;

private:
    QString lock();
    QString take(const QString &receivedName) const;

    QString m_directory;
    QString m_incoming;
    QString m_lockPath;
    QLockFile m_lock;
    QStringList m_leftBehind;
};

} // namespace zyprinter

#endif // MODELSTORE_H
