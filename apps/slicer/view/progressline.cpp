// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One line of progress, made to fit a width.

#include "progressline.h"

#include "displaywidth.h"
#include "errorline.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

constexpr int narrowestBar = 10;
constexpr int widestBar = 40;
constexpr int longestLabel = 24;

QString bar(double fraction, int width)
{
    const int inner = width - 2;
    const int filled = static_cast<int>(fraction * inner);
    QString cells(filled, QLatin1Char('='));
    if (filled < inner)
        cells += QLatin1Char('>');
    return QLatin1Char('[') + cells.leftJustified(inner) + QLatin1Char(']');
}

QString joined(const QStringList &parts)
{
    return zyapp::onOneLine(parts.join(QLatin1String("  ")));
}

} // namespace

int percentOf(double fraction)
{
    // 29 of 100 is a little less than 0.29.
    constexpr double inexactness = 1e-9;
    constexpr int whole = 100;
    const int percent = static_cast<int>(fraction * whole + inexactness);
    return fraction < 1.0 ? std::min(percent, whole - 1) : whole;
}

QString progressLine(const ProgressRow &row, int width)
{
    const QString label = zyapp::elided(zyapp::onOneLine(row.label), longestLabel);
    if (row.fraction < 0)
        return zyapp::elided(joined(QStringList(label) + row.columns), width);

    const double fraction = std::clamp(row.fraction, 0.0, 1.0);
    const QString percent
        = QStringLiteral("%1 %").arg(percentOf(fraction), 3, 10, QLatin1Char(' '));
    QStringList right = QStringList(percent) + row.columns;
    const auto space = [&] {
        return width - zyapp::displayWidth(label) - zyapp::displayWidth(joined(right)) - 4;
    };
    while (right.size() > 1 && space() < narrowestBar)
        right.removeLast();
    if (space() < narrowestBar)
        return zyapp::elided(joined({percent, label}), width);
    return joined({label, bar(fraction, std::min(space(), widestBar)), joined(right)});
}

} // namespace zyslicer
