// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's status, for people.

#include "statustext.h"

#include "printphase.h"
#include "units.h"
#include "wirewords.h"

namespace
{

QString text(const QJsonObject &status, QLatin1String key)
{
    return status.value(key).toString();
}

QString layerText(const QJsonObject &status)
{
    const double fraction = layerFraction(status);
    if (fraction < 0)
        return {};
    return QStringLiteral("%1 of %2 (%3 %)")
        .arg(text(status, wire::curSliceLayer), text(status, wire::sliceLayerCount))
        .arg(static_cast<int>(fraction * 100));
}

QString row(const QString &name, const QString &value)
{
    if (value.isEmpty())
        return {};
    return name.leftJustified(19) + value + QLatin1Char('\n');
}

} // namespace

QString statusBlock(const QString &printer, const QJsonObject &status)
{
    QString block = row(QStringLiteral("printer"), printer)
        + row(QStringLiteral("state"), printPhaseText(text(status, wire::printStatus)))
        + row(QStringLiteral("file"), text(status, wire::filename))
        + row(QStringLiteral("layer"), layerText(status))
        + row(QStringLiteral("remaining"), remainingText(status))
        + row(QStringLiteral("layer thickness"), text(status, wire::layerThickness))
        + row(QStringLiteral("resin"), text(status, wire::resin));
    for (const QLatin1String &key : wire::parameters)
        block += row(key, text(status, key));
    block.chop(1);
    return block;
}

QString statusLine(const QJsonObject &status)
{
    QString line = printPhaseText(text(status, wire::printStatus));
    const QString file = text(status, wire::filename);
    if (!file.isEmpty())
        line += QLatin1Char(' ') + file;
    const QString layers = layerText(status);
    if (!layers.isEmpty())
        line += QStringLiteral(", layer ") + layers;
    const QString remaining = remainingText(status);
    if (!remaining.isEmpty())
        line += QStringLiteral(", remaining ") + remaining;
    return line;
}

double layerFraction(const QJsonObject &status)
{
    bool isNumber = false;
    const double layers = text(status, wire::sliceLayerCount).toDouble(&isNumber);
    if (!isNumber || layers <= 0)
        return -1;
    return qBound(0.0, text(status, wire::curSliceLayer).toDouble() / layers, 1.0);
}

QString remainingText(const QJsonObject &status)
{
    const QString remaining = text(status, wire::printRemainTime);
    bool isNumber = false;
    const qint64 seconds = remaining.toLongLong(&isNumber);
    return isNumber && seconds >= 0 ? durationText(seconds) : remaining;
}
