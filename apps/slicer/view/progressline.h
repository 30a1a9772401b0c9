// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One line of progress, made to fit a width.

#ifndef PROGRESSLINE_H
#define PROGRESSLINE_H

#include <QString>
#include <QStringList>

namespace zyslicer
{

struct ProgressRow {
    QString label;
    double fraction = -1; ///< 0 to 1; negative for a row without a bar
    QStringList columns; ///< right of the bar, the most important first
};

/// Rounded down, from 0 to 100, which is for the whole alone.
int percentOf(double fraction);

/// At most @p width columns of a terminal: columns go first, from the last; then the bar; then the
/// label.
QString progressLine(const ProgressRow &row, int width);

} // namespace zyslicer

#endif // PROGRESSLINE_H
