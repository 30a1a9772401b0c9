// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The models that the printer keeps, and the place where they arrive.

#include "modelstore.h"

#include "directory.h"
#include "replacement.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace zyprinter
{

namespace
{

const QLatin1String receptionFile("wifi_tranfer.tmp"); // the library's own, misspelt as it is there

QString lastError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/// So that a loss of power does not take back the names in it.
void syncDirectory(const QString &path)
{
    const int descriptor
        = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

ModelStore::ModelStore(const QString &directory)
    : m_directory(QFileInfo(directory).absoluteFilePath()),
      m_incoming(m_directory + QStringLiteral("/.incoming")),
      m_lockPath(m_directory + QStringLiteral("/.zyprinter.lock")), m_lock(m_lockPath)
{
    // However long ago it was made: a printer runs for months.
    m_lock.setStaleLockTime(0);
}

QString ModelStore::lock()
{
    const QString fault = zyapp::replacementFault(m_lockPath);
    if (!fault.isEmpty())
        return QStringLiteral("has a lock file (.zyprinter.lock) that cannot be used (%1)")
            .arg(fault);
    // Longer than another takes from making the file to holding it.
    constexpr int patience = 200; // ms
    if (m_lock.tryLock(patience))
        return {};
    if (m_lock.error() != QLockFile::LockFailedError)
        return QStringLiteral("cannot be locked (.zyprinter.lock)");
    // The number in a killed process's lock file may be that of another process by now, or of this
    // one in a container. Removing works only on a file that nobody holds, so it tells them apart.
    if (m_lock.removeStaleLockFile() && m_lock.tryLock(patience))
        return {};
    qint64 processId = 0;
    QString host;
    QString program;
    return m_lock.getLockInfo(&processId, &host, &program)
        ? QStringLiteral("is in use by another zyprinter, process %1").arg(processId)
        : QStringLiteral("is in use by another zyprinter");
}

QString ModelStore::prepare()
{
    QString fault = directoryFault(m_directory);
    if (!fault.isEmpty())
        return fault;
    fault = lock();
    if (!fault.isEmpty())
        return fault;
    QDir().mkdir(m_incoming);
    fault = directoryFault(m_incoming);
    if (!fault.isEmpty())
        return QStringLiteral("has a place for incoming files (.incoming) that ") + fault;
    const QStringList leftOver = QDir(m_incoming).entryList(QDir::Files);
    for (const QString &name : leftOver) {
        if (name == receptionFile)
            continue;
        const QString refusal = take(name);
        if (!refusal.isEmpty())
            m_leftBehind += QStringLiteral("left in .incoming: \"%1\": %2").arg(name, refusal);
    }
    return {};
}

bool ModelStore::canReceive() const
{
    return QFileInfo(m_incoming).isDir() || QDir().mkdir(m_incoming);
}

QString ModelStore::nameFault(const QString &name)
{
    if (name.isEmpty())
        return QStringLiteral("it has no name");
    if (name.contains(QLatin1Char('/')))
        return QStringLiteral("a name with a slash is not accepted");
    if (name.startsWith(QLatin1Char('.')))
        return QStringLiteral("a name that begins with a dot is not accepted");
    if (name == receptionFile)
        return QStringLiteral("the name of the reception file is not accepted");
    return {};
}

bool ModelStore::isFileName(const QString &name) const
{
    const QFileInfo there(QDir(m_directory).absoluteFilePath(name));
    return !there.isSymLink() && !there.isDir();
}

void ModelStore::removeReception() const
{
    QFile::remove(QDir(m_incoming).absoluteFilePath(receptionFile));
}

QString ModelStore::path(const QString &name) const
{
    return nameFault(name).isEmpty() ? m_directory + QLatin1Char('/') + name : QString();
}

QString ModelStore::keep(const QString &receivedName)
{
    QString refusal = take(receivedName);
    if (!refusal.isEmpty())
        QFile::remove(QDir(m_incoming).absoluteFilePath(receivedName));
    return refusal;
}

/// Moves a received file to where models are kept. Empty, or why it stays where it is.
QString ModelStore::take(const QString &receivedName) const
{
    const QString kept = path(receivedName);
    // The name that the library reports when it could not give the file the slicer's.
    if (receivedName == receptionFile)
        return QStringLiteral("it could not get the name that the slicer gave");
    if (kept.isEmpty())
        return nameFault(receivedName);
    const QString fault = zyapp::replacementFault(kept);
    if (!fault.isEmpty())
        return QStringLiteral("what has that name cannot be replaced (%1)").arg(fault);
    const QString received = QDir(m_incoming).absoluteFilePath(receivedName);
    // QFile::rename() does not replace; a print of the old model goes on reading the old file.
    if (std::rename(QFile::encodeName(received).constData(), QFile::encodeName(kept).constData())
        != 0)
        return lastError();
    // Where it is now first: better in both places than in neither.
    syncDirectory(m_directory);
    syncDirectory(m_incoming);
    return {};
}

QStringList ModelStore::names() const
{
    return QDir(m_directory).entryList(QDir::Files);
}

} // namespace zyprinter
