// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a program needs of the system before it begins: open files, and its output written.

#include "resources.h"

#include "errorline.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace zyapp
{

namespace
{

bool tryToOpen(int count)
{
    std::vector<int> descriptors;
    bool isDone = true;
    while (isDone && descriptors.size() < static_cast<std::size_t>(count)) {
        const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
        isDone = descriptor >= 0;
        if (isDone)
            descriptors.push_back(descriptor);
    }
    std::for_each(descriptors.begin(), descriptors.end(), close);
    return isDone;
}

} // namespace

bool canOpen(int count)
{
    if (tryToOpen(count))
        return true;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return false;
    limit.rlim_cur = std::min(limit.rlim_max, limit.rlim_cur + static_cast<rlim_t>(count));
    return setrlimit(RLIMIT_NOFILE, &limit) == 0 && tryToOpen(count);
}

void printTooFewOpenFiles(const QString &program, int count)
{
    printError(program, QStringLiteral("too few files may be open at once"),
               QStringLiteral("%1 more are needed").arg(count),
               QStringLiteral("raise the limit with 'ulimit -n'"));
}

int onceWritten(const QString &program, int code, int failure)
{
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return code;
    printError(program, QStringLiteral("standard output not writable"),
               QString::fromLocal8Bit(std::strerror(errno)),
               QStringLiteral("direct it to a place that can be written"));
    return code == 0 ? failure : code;
}

} // namespace zyapp
