// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A moment that is known again after this program was restarted, but not after the machine was.

#ifndef MOMENT_H
#define MOMENT_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QSysInfo>

namespace zybridge
{

inline qint64 msecsSinceBoot()
{
    QElapsedTimer now;
    now.start();
    return now.msecsSinceReference();
}

/// The present moment, in a form to be stored.
inline QByteArray presentMoment()
{
    return QSysInfo::bootUniqueId() + ' ' + QByteArray::number(msecsSinceBoot());
}

/// Whether @p moment is at most @p msecs ago. False for one before the machine was switched on.
inline bool isRecent(const QByteArray &moment, qint64 msecs)
{
    const QByteArray boot = QSysInfo::bootUniqueId();
    const QList<QByteArray> parts = moment.split(' ');
    return !boot.isEmpty() && parts.value(0) == boot
        && msecsSinceBoot() - parts.value(1).toLongLong() <= msecs;
}

} // namespace zybridge

#endif // MOMENT_H
