// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Rows of text whose columns stand one below the other.

#ifndef TABLE_H
#define TABLE_H

#include <QStringList>
#include <QVector>

namespace zyslicer
{

/// A line for each row; all rows have as many cells, of any text.
QString tableText(const QVector<QStringList> &table);

} // namespace zyslicer

#endif // TABLE_H
