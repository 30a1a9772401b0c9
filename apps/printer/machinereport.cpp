// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the machine does, in words.

#include "machinereport.h"

#include "modelreader.h"
#include "printerlog.h"

#include <QMetaEnum>

#include <cmath>

namespace zyprinter
{

namespace
{

/// Empty for the steps in between.
QString stepText(const Machine &machine)
{
    const QString job = QStringLiteral("\"%1\"").arg(machine.job());
    switch (machine.state()) {
    case Machine::State::Checking:
        return QStringLiteral("checking ") + job;
    case Machine::State::Printing:
        return machine.layer() == 0
            ? QStringLiteral("printing %1, %2 layers").arg(job).arg(machine.model()->layerCount())
            : QStringLiteral("going on with ") + job;
    case Machine::State::Paused:
        return QStringLiteral("paused after layer %1").arg(machine.layer());
    case Machine::State::Complete:
        return QStringLiteral("complete: ") + job;
    case Machine::State::Stopped:
        return QStringLiteral("stopped: ") + job;
    case Machine::State::Failed:
        return QStringLiteral("failed: %1: %2").arg(job, machine.failure());
    default:
        return {};
    }
}

} // namespace

QString stateTitle(Machine::State state)
{
    const char *name = QMetaEnum::fromType<Machine::State>().valueToKey(int(state));
    return QString::fromLatin1(name).toLower();
}

QString clockTime(double seconds)
{
    constexpr int perHour = 3600;
    constexpr int perMinute = 60;
    const auto whole = qint64(std::ceil(seconds));
    return QStringLiteral("%1:%2:%3")
        .arg(whole / perHour)
        .arg(whole % perHour / perMinute, 2, 10, QLatin1Char('0'))
        .arg(whole % perMinute, 2, 10, QLatin1Char('0'));
}

void reportTo(PrinterLog &log, const Machine &machine)
{
    QObject::connect(&machine, &Machine::stateChanged, &log, [&machine, &log] {
        const QString text = stepText(machine);
        if (!text.isEmpty())
            log.add(text);
    });
    QObject::connect(&machine, &Machine::layerExposed, &log, [&machine, &log](int layer) {
        constexpr int lines = 10;
        const int count = machine.model()->layerCount();
        if (layer * lines / count != (layer - 1) * lines / count)
            log.add(QStringLiteral("layer %1 of %2, %3 left")
                        .arg(layer)
                        .arg(count)
                        .arg(clockTime(machine.remainingTime())));
    });
}

} // namespace zyprinter
