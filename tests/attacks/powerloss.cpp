// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Preloaded into zyprinter: keeps beside the real directory what a loss of power would leave of it.
//
// A file's contents count from its last fdatasync() or fsync(), a directory's names from its last
// fsync(). The copy lies in the directory that ZYTEST_DISK names: a file for each inode, and one
// list of names for each directory.

#include <QDir>
#include <QFile>
#include <QString>

#include <dlfcn.h>
#include <sys/stat.h>

namespace
{

QString disk(const char *kind, ino_t inode)
{
    return qEnvironmentVariable("ZYTEST_DISK")
        + QStringLiteral("/%1-%2").arg(QLatin1String(kind)).arg(inode);
}

void replace(const QString &path, const QByteArray &contents)
{
    QFile file(path + QStringLiteral(".new"));
    if (file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size())
        file.close();
    ::rename(QFile::encodeName(file.fileName()).constData(),
             QFile::encodeName(path).constData()); // at once: the process may be killed meanwhile
}

void keep(int descriptor)
{
    struct stat status {
    };
    if (::fstat(descriptor, &status) != 0)
        return;
    const QString path = QStringLiteral("/proc/self/fd/%1").arg(descriptor);
    if (S_ISREG(status.st_mode)) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            replace(disk("file", status.st_ino), file.readAll());
    } else if (S_ISDIR(status.st_mode)) {
        QByteArray list;
        const QString directory = QFile::symLinkTarget(path);
        const QStringList names = QDir(directory).entryList(QDir::Files);
        for (const QString &name : names) {
            struct stat entry {
            };
            if (::stat(QFile::encodeName(directory + QLatin1Char('/') + name).constData(), &entry)
                == 0)
                list += QByteArray::number(qulonglong(entry.st_ino)) + ' ' + name.toUtf8() + '\n';
        }
        replace(disk("names", status.st_ino), list);
    }
}

int syncAndKeep(const char *function, int descriptor)
{
    using Sync = int (*)(int);
    const auto sync = reinterpret_cast<Sync>(::dlsym(RTLD_NEXT, function));
    const int result = sync(descriptor);
    if (result == 0)
        keep(descriptor);
    return result;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int fdatasync(int descriptor)
{
    return syncAndKeep("fdatasync", descriptor);
}

extern "C" __attribute__((visibility("default"))) int fsync(int descriptor)
{
    return syncAndKeep("fsync", descriptor);
}
