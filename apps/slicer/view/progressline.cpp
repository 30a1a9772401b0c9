// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One line of progress, made to fit a width.

#include "progressline.h"

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

QString elided(const QString &text, int width)
{
    if (text.size() <= width)
        return text;
    return width > 1 ? text.left(width - 1) + QChar(0x2026) : text.left(width);
}

QString joined(const QStringList &parts)
{
    return parts.join(QLatin1String("  "));
}

} // namespace

QString progressLine(const ProgressRow &row, int width)
{
    const QString label = elided(row.label, longestLabel);
    if (row.fraction < 0)
        return elided(joined(QStringList(label) + row.columns), width);

    const double fraction = std::clamp(row.fraction, 0.0, 1.0);
    const QString percent
        = QStringLiteral("%1 %").arg(static_cast<int>(fraction * 100), 3, 10, QLatin1Char(' '));
    QStringList right = QStringList(percent) + row.columns;
    const auto space = [&] { return width - int(label.size() + joined(right).size()) - 4; };
    while (right.size() > 1 && space() < narrowestBar)
        right.removeLast();
    if (space() < narrowestBar)
        return elided(joined({percent, label}), width);
    return joined({label, bar(fraction, std::min(space(), widestBar)), joined(right)});
}

} // namespace zyslicer
