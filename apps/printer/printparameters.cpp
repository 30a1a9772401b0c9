// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The six print parameters and the time that a layer takes with them.

#include "printparameters.h"

#include "modelheader.h"

#include <cmath>

namespace zyprinter
{

namespace
{

struct Range {
    double least;
    double most;
};

// In the order of PrintParameters::Id.
constexpr std::array<Range, PrintParameters::all.size()> ranges{{
    {0.1, 3600},
    {0, 3600},
    {0.1, 3600},
    {0.1, 200},
    {1, 10000},
    {0, 1000},
}};

QString number(double value)
{
    return QString::number(value, 'g', 10);
}

} // namespace

PrintParameters::PrintParameters()
{
    m_recommended[InitExposure] = QStringLiteral("30");
    m_recommended[DelayLight] = QStringLiteral("0.5");
    m_recommended[PrintExposure] = QStringLiteral("2.5");
    m_recommended[PrintHeight] = QStringLiteral("5");
    m_recommended[EleSpeed] = QStringLiteral("120");
    m_recommended[BottomExposureNum] = QStringLiteral("5");
}

QString PrintParameters::text(Id id) const
{
    return m_set[id].isEmpty() ? m_recommended[id] : m_set[id];
}

double PrintParameters::value(Id id) const
{
    return text(id).toDouble();
}

bool PrintParameters::set(Id id, const QString &text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    const bool isInRange = value >= ranges[id].least && value <= ranges[id].most;
    const bool isWhole = std::floor(value) == value;
    if (!isNumber || !isInRange || (id == BottomExposureNum && !isWhole))
        return false;
    m_set[id] = text;
    return true;
}

void PrintParameters::recommend(const zymodel::ModelHeader &header)
{
    m_recommended[InitExposure] = number(header.bottomExposure / 1e3);
    m_recommended[DelayLight] = number(header.lightDelay / 1e3);
    m_recommended[PrintExposure] = number(header.exposure / 1e3);
    m_recommended[PrintHeight] = number(header.liftHeight / 1e3);
    m_recommended[EleSpeed] = number(header.liftSpeed / 1e3);
    m_recommended[BottomExposureNum] = QString::number(header.bottomLayers);
}

double PrintParameters::layerTime(int layer) const
{
    constexpr double secondsPerMinute = 60;
    const bool isBottom = layer <= int(value(BottomExposureNum));
    const double upAndDown = 2 * value(PrintHeight) / value(EleSpeed) * secondsPerMinute;
    return value(isBottom ? InitExposure : PrintExposure) + value(DelayLight) + upAndDown;
}

double PrintParameters::timeAfter(int layer, int count) const
{
    const int left = count - layer;
    const int bottom = qBound(0, int(value(BottomExposureNum)) - layer, left);
    // Layer 1 is a bottom layer and layer count + bottomExposureNum + 1 is none, whatever is set.
    return bottom * layerTime(layer + 1)
        + (left - bottom) * layerTime(int(value(BottomExposureNum)) + 1);
}

} // namespace zyprinter
