// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Amounts, rates and times as people read them.

#include "units.h"

namespace
{

struct Unit {
    double size;
    const char *name;
};

Unit unitFor(double bytes)
{
    static constexpr Unit units[] = {
        {1024.0 * 1024 * 1024, "GiB"},
        {1024.0 * 1024, "MiB"},
        {1024.0, "KiB"},
    };
    for (const Unit &unit : units) {
        if (bytes >= unit.size)
            return unit;
    }
    return {1.0, "B"};
}

QString numberIn(const Unit &unit, double bytes)
{
    return QString::number(bytes / unit.size, 'f', unit.size > 1.0 ? 1 : 0);
}

} // namespace

QString byteText(qint64 bytes)
{
    const auto amount = static_cast<double>(bytes);
    const Unit unit = unitFor(amount);
    return numberIn(unit, amount) + QLatin1Char(' ') + QLatin1String(unit.name);
}

QString byteText(qint64 bytes, qint64 total)
{
    const Unit unit = unitFor(static_cast<double>(total));
    return numberIn(unit, static_cast<double>(bytes)) + QLatin1Char('/')
        + numberIn(unit, static_cast<double>(total)) + QLatin1Char(' ') + QLatin1String(unit.name);
}

QString rateText(double bytesPerSecond)
{
    const Unit unit = unitFor(bytesPerSecond);
    return numberIn(unit, bytesPerSecond) + QLatin1Char(' ') + QLatin1String(unit.name)
        + QLatin1String("/s");
}

QString durationText(qint64 seconds)
{
    QString minutesAndSeconds
        = QStringLiteral("%1:%2")
              .arg(seconds / 60 % 60, seconds >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
              .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    if (seconds < 3600)
        return minutesAndSeconds;
    return QStringLiteral("%1:%2").arg(seconds / 3600).arg(minutesAndSeconds);
}
