// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What this process has used so far, and the one line of JSON in which it says so.

#include "processusage.h"

#include <QFile>
#include <QJsonDocument>
#include <QTextStream>

#include <sys/resource.h>

namespace zybench
{

namespace
{

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

qint64 peakResidentKib()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArrayList lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').value(1).toLongLong();
    }
    return 0;
}

void allowManyFiles()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

void printLine(const QJsonObject &object)
{
    QTextStream(stdout) << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))
                        << Qt::endl;
}

} // namespace zybench
