// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Rows of text whose columns stand one below the other.

#include "table.h"

#include "displaywidth.h"
#include "errorline.h"

#include <algorithm>

namespace zyslicer
{

QString tableText(const QVector<QStringList> &table)
{
    QString text;
    for (const QStringList &cells : table) {
        QString line;
        for (int column = 0; column < cells.size(); ++column) {
            int width = 0;
            for (const QStringList &other : table)
                width = std::max(width, zyapp::displayWidth(other[column]));
            line += zyapp::padded(cells[column], width + 2);
        }
        text += zyapp::onOneLine(line.trimmed()) + QLatin1Char('\n');
    }
    return text;
}

} // namespace zyslicer
