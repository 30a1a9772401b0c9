// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Amounts of data and time as people read them.

#ifndef PANEL_FORMATTING_H
#define PANEL_FORMATTING_H

#include <QString>

#include <optional>

namespace zypanel
{

/// "12.0 MiB".
QString sizeText(qint64 bytes);
/// "45 s", "3 min 20 s", "1 h 5 min".
QString durationText(qint64 seconds);
/// "12.0 MiB of 40.0 MiB, 18.3 MiB/s, 2 s left"; without what is not known yet.
QString progressText(qint64 received, qint64 total, double rate, qint64 secondsLeft);
/// "40.0 MiB in 3 s, 13.3 MiB/s"; without a rate where the time says nothing.
QString summaryText(qint64 bytes, qint64 milliseconds);

/// Of a printer's own text: digits are seconds, anything else is shown as it stands.
QString timeText(const QString &printerText);
/// Of a printer's own text: a number is in mm, anything else is shown as it stands.
QString lengthText(const QString &printerText);

/// @p value as the user's locale writes it, without separators of groups.
QString numberText(double value);
/// Of a printer's own text: a number as the locale writes it, anything else as it stands.
QString localText(const QString &printerText);
/// The number that a person has typed, with a comma or a point before its decimals.
std::optional<double> numberIn(const QString &typed);

/// A name for a dialog, which a longer one would widen: without its middle.
QString shortened(const QString &name);

} // namespace zypanel

#endif // PANEL_FORMATTING_H
