// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the server's options ask of the disk: reserved space, and data that outlive a power loss.

#include "storage.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zyws
{

namespace
{

/// Bytes that @p path takes on the disk.
qint64 occupied(const QString &path)
{
#ifdef Q_OS_LINUX
    constexpr qint64 blockSize = 512; // of st_blocks, on every file system
    struct stat status {
    };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_blocks * blockSize
                                                                     : 0;
#else
    return QFileInfo(path).size();
#endif
}

} // namespace

QString spaceFault(const ZyServerOptions &options, const QString &temporaryFile, qint64 bytes)
{
    if (!options.reservesSpace())
        return {};
    const QStorageInfo storage(QFileInfo(temporaryFile).absolutePath());
    const qint64 needed = qMax(qint64(0), bytes - occupied(temporaryFile)) + options.keepFree();
    if (!storage.isValid() || needed <= storage.bytesAvailable())
        return {};
    return QStringLiteral("%1 bytes are free and %2 needed")
        .arg(storage.bytesAvailable())
        .arg(needed);
}

QString reserveSpace(const ZyServerOptions &options, const QFile &file, qint64 bytes)
{
#ifdef Q_OS_LINUX
    if (!options.reservesSpace())
        return {};
    const int fault = ::posix_fallocate(file.handle(), 0, bytes);
    return fault == 0 ? QString() : QString::fromLocal8Bit(std::strerror(fault));
#else
    Q_UNUSED(options)
    Q_UNUSED(file)
    Q_UNUSED(bytes)
    return {};
#endif
}

bool syncFile(const ZyServerOptions &options, const QFile &file)
{
#ifdef Q_OS_LINUX
    return !options.syncsToDisk() || ::fdatasync(file.handle()) == 0;
#else
    Q_UNUSED(options)
    Q_UNUSED(file)
    return true;
#endif
}

void syncDirectory(const ZyServerOptions &options, const QString &directory)
{
#ifdef Q_OS_LINUX
    if (!options.syncsToDisk())
        return;
    const int descriptor
        = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
#else
    Q_UNUSED(options)
    Q_UNUSED(directory)
#endif
}

} // namespace zyws
