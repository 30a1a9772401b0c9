// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Preloaded into zyprinter: keeps beside the real directory what a loss of power could leave of it,
// and kills the process at a given step.
//
// A file's contents and a directory's names are safe from the last fdatasync() or fsync() on; each
// write() and ftruncate() since then may have reached the disk or not, whatever came before it. So
// the directory that ZYTEST_DISK names gets, by inode, the contents and the names of the last sync,
// and a journal of what came later. ZYTEST_POWER_OFF is the number of the step, counted over all of
// these calls and rename(), before which the power goes.

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QString>

#include <atomic>
#include <csignal>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// The copies are written with the same calls.
thread_local bool isCopying = false;

class Copying
{
public:
    Copying() { isCopying = true; }
    ~Copying() { isCopying = false; }

private:
    Q_DISABLE_COPY(Copying)
};

template <typename Function> Function next(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void countStep()
{
    static const int last = qEnvironmentVariableIntValue("ZYTEST_POWER_OFF");
    static std::atomic_int steps{0};
    if (++steps == last)
        std::raise(SIGKILL);
}

QString disk(const char *kind, ino_t inode)
{
    return qEnvironmentVariable("ZYTEST_DISK")
        + QStringLiteral("/%1-%2").arg(QLatin1String(kind)).arg(inode);
}

void write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(contents);
}

void keepFile(int descriptor, ino_t inode)
{
    QFile file(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    if (file.open(QIODevice::ReadOnly))
        write(disk("file", inode), file.readAll());
    QFile::remove(disk("journal", inode));
}

void keepNames(int descriptor, ino_t inode)
{
    QByteArray list;
    const QString directory
        = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
    const QStringList names = QDir(directory).entryList(QDir::Files);
    for (const QString &name : names) {
        struct stat entry {
        };
        if (::stat(QFile::encodeName(directory + QLatin1Char('/') + name).constData(), &entry) == 0)
            list += QByteArray::number(qulonglong(entry.st_ino)) + ' ' + name.toUtf8() + '\n';
    }
    write(disk("names", inode), list);
}

int syncAndKeep(const char *function, int descriptor)
{
    if (isCopying)
        return next<int (*)(int)>(function)(descriptor);
    countStep();
    const int result = next<int (*)(int)>(function)(descriptor);
    const Copying copying;
    struct stat status {
    };
    if (result == 0 && ::fstat(descriptor, &status) == 0) {
        if (S_ISREG(status.st_mode))
            keepFile(descriptor, status.st_ino);
        else if (S_ISDIR(status.st_mode))
            keepNames(descriptor, status.st_ino);
    }
    return result;
}

/// @p size: of a truncated file, else -1; @p bytes: written at @p offset.
void note(int descriptor, qint64 size, qint64 offset, const QByteArray &bytes)
{
    struct stat status {
    };
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return;
    countStep();
    const Copying copying;
    QFile journal(disk("journal", status.st_ino));
    if (journal.open(QIODevice::Append))
        QDataStream(&journal) << size << offset << bytes;
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) int fdatasync(int descriptor)
{
    return syncAndKeep("fdatasync", descriptor);
}

__attribute__((visibility("default"))) int fsync(int descriptor)
{
    return syncAndKeep("fsync", descriptor);
}

__attribute__((visibility("default"))) ssize_t write(int descriptor, const void *bytes, size_t size)
{
    if (!isCopying)
        note(descriptor, -1, ::lseek(descriptor, 0, SEEK_CUR),
             QByteArray::fromRawData(static_cast<const char *>(bytes), int(size)));
    return next<ssize_t (*)(int, const void *, size_t)>("write")(descriptor, bytes, size);
}

__attribute__((visibility("default"))) int ftruncate64(int descriptor, off64_t size)
{
    if (!isCopying)
        note(descriptor, size, 0, {});
    return next<int (*)(int, off64_t)>("ftruncate64")(descriptor, size);
}

__attribute__((visibility("default"))) int rename(const char *from, const char *to)
{
    if (!isCopying)
        countStep();
    return next<int (*)(const char *, const char *)>("rename")(from, to);
}
}
