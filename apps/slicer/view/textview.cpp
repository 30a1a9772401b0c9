// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the views for people share: lines of news and the summary of several printers.

#include "textview.h"

#include "terminal.h"
#include "units.h"

#include <algorithm>

namespace
{

using Table = QVector<QStringList>;

QString tableText(const Table &table)
{
    QString text;
    for (const QStringList &cells : table) {
        QString line;
        for (int column = 0; column < cells.size(); ++column) {
            int width = 0;
            for (const QStringList &other : table)
                width = std::max(width, other[column].size());
            line += cells[column].leftJustified(width + 2);
        }
        text += line.trimmed() + QLatin1Char('\n');
    }
    return text;
}

QStringList transferTitles()
{
    return {QStringLiteral("SENT"), QStringLiteral("TIME"), QStringLiteral("RATE")};
}

QStringList transferCells(const TransferLog::Entry &entry)
{
    const QString none = QStringLiteral("-");
    if (entry.sent <= 0)
        return {none, none, none};
    return {byteText(entry.sent), durationText(duration(entry)), rateText(meanRate(entry))};
}

} // namespace

TextView::TextView(const QVector<Printer> &printers)
    : View(printers), m_transfers(printers.size()), m_outcomes(printers.size())
{
}

void TextView::endPrinter(int printer, const Outcome &outcome)
{
    m_outcomes[printer] = outcome;
}

void TextView::finish()
{
    if (isSeveral())
        terminal::write(summary());
}

QString TextView::marked(int printer, const QString &text) const
{
    if (!isSeveral())
        return text + QLatin1Char('\n');
    const QStringList plain = text.split(QLatin1Char('\n'));
    QString lines;
    for (const QString &line : plain)
        lines += QStringLiteral("%1: %2\n").arg(printers()[printer].label, line);
    return lines;
}

QString TextView::summary() const
{
    const bool isTransfer = m_transfers.hasSent();
    Table table{QStringList(QStringLiteral("PRINTER"))
                + (isTransfer ? transferTitles() : QStringList())
                + QStringList(QStringLiteral("RESULT"))};
    for (int i = 0; i < printers().size(); ++i) {
        QStringList cells(printers()[i].label);
        if (isTransfer)
            cells += transferCells(m_transfers.entry(i));
        cells += m_outcomes[i].isOk() ? QStringLiteral("ok") : m_outcomes[i].what;
        table.append(cells);
    }
    return tableText(table);
}
