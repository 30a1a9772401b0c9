// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Colours for severities that fit a light and a dark palette.

#include "theme.h"

#include <QFont>
#include <QPalette>

namespace zypanel
{

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness()
        < palette.color(QPalette::WindowText).lightness();
}

QColor blended(const QColor &base, const QColor &over, qreal opacity)
{
    const auto mix = [opacity](auto from, auto to) { // qreal in Qt 5, float in Qt 6
        return static_cast<decltype(from)>(from + (to - from) * opacity);
    };
    return QColor::fromRgbF(mix(base.redF(), over.redF()), mix(base.greenF(), over.greenF()),
                            mix(base.blueF(), over.blueF()));
}

QColor severityColor(Severity severity, const QPalette &palette)
{
    const bool dark = isDark(palette);
    switch (severity) {
    case Severity::Good:
        return dark ? QColor(0x6c, 0xc5, 0x7f) : QColor(0x1d, 0x7a, 0x3a);
    case Severity::Warning:
        return dark ? QColor(0xe8, 0xb3, 0x4b) : QColor(0x96, 0x5d, 0x00);
    case Severity::Error:
        return dark ? QColor(0xf0, 0x80, 0x7a) : QColor(0xb3, 0x26, 0x1e);
    case Severity::Info:
        break;
    }
    return dark ? QColor(0x7f, 0xb2, 0xee) : QColor(0x1f, 0x5f, 0xae);
}

QColor quietTextColor(const QPalette &palette)
{
    return blended(palette.color(QPalette::WindowText), palette.color(QPalette::Window), 0.38);
}

QFont scaledFont(const QFont &font, qreal factor)
{
    QFont scaled = font;
    if (font.pixelSize() > 0)
        scaled.setPixelSize(qRound(font.pixelSize() * factor));
    else
        scaled.setPointSizeF(font.pointSizeF() * factor);
    return scaled;
}

} // namespace zypanel
