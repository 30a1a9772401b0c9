// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Colours for severities that fit a light and a dark palette.

#ifndef PANEL_THEME_H
#define PANEL_THEME_H

#include "notice.h"

#include <QColor>

class QFont;
class QPalette;

namespace zypanel
{

bool isDark(const QPalette &palette);
/// @p over laid on @p base with the given opacity, 0 to 1.
QColor blended(const QColor &base, const QColor &over, qreal opacity);
/// Strong enough to be read as text on the palette's window colour.
QColor severityColor(Severity severity, const QPalette &palette);
/// The palette's text colour, stepped back.
QColor quietTextColor(const QPalette &palette);

/// @p font, larger or smaller, whichever way its size is given.
QFont scaledFont(const QFont &font, qreal factor);

} // namespace zypanel

#endif // PANEL_THEME_H
