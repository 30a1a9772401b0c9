// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the kernel knows of this process, or another: its TCP connections, processor time and
// memory.

#include "processview.h"

#include <QtEndian>

#include <ctime>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace zytest
{

namespace
{

using NameOf = int (*)(int, sockaddr *, socklen_t *);

/// The port at one end of an IPv4 or IPv6 connection; 0 for any other descriptor.
quint16 portOf(int descriptor, NameOf nameOf)
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (nameOf(descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0)
        return 0;
    if (address.ss_family == AF_INET)
        return qFromBigEndian(reinterpret_cast<const sockaddr_in &>(address).sin_port);
    if (address.ss_family == AF_INET6)
        return qFromBigEndian(reinterpret_cast<const sockaddr_in6 &>(address).sin6_port);
    return 0;
}

/// @p whose is RUSAGE_SELF or RUSAGE_THREAD.
qint64 processorTimeOf(int whose)
{
    rusage usage{};
    ::getrusage(static_cast<__rusage_who>(whose), &usage);
    const auto milliseconds
        = [](const timeval &time) { return qint64(time.tv_sec) * 1000 + time.tv_usec / 1000; };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

} // namespace

int connectionDescriptor(quint16 localPort, quint16 peerPort)
{
    constexpr int descriptorLimit = 1024; // more than any test opens
    for (int descriptor = 0; descriptor < descriptorLimit; ++descriptor) {
        if (portOf(descriptor, ::getsockname) == localPort
            && portOf(descriptor, ::getpeername) == peerPort)
            return descriptor;
    }
    return -1;
}

int unreadBytes(quint16 localPort, quint16 peerPort)
{
    int count = 0;
    const int descriptor = connectionDescriptor(localPort, peerPort);
    if (descriptor >= 0)
        ::ioctl(descriptor, FIONREAD, &count);
    return count;
}

int connectionOption(quint16 localPort, quint16 peerPort, int level, int option)
{
    int value = -1;
    socklen_t size = sizeof value;
    const int descriptor = connectionDescriptor(localPort, peerPort);
    if (descriptor >= 0)
        ::getsockopt(descriptor, level, option, &value, &size);
    return value;
}

qint64 processorTime()
{
    return processorTimeOf(RUSAGE_SELF);
}

qint64 processorTime(qint64 processId)
{
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(static_cast<pid_t>(processId), &clock) != 0
        || ::clock_gettime(clock, &time) != 0)
        return -1;
    return qint64(time.tv_sec) * 1000000 + time.tv_nsec / 1000;
}

qint64 threadTime()
{
    return processorTimeOf(RUSAGE_THREAD);
}

qint64 peakMemory()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
}

} // namespace zytest
