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
    Table table{{QStringLiteral("PRINTER"), QStringLiteral("SENT"), QStringLiteral("TIME"),
                 QStringLiteral("RATE"), QStringLiteral("RESULT")}};
    for (int i = 0; i < printers().size(); ++i) {
        const TransferLog::Entry &entry = m_transfers.entry(i);
        const bool hasSent = entry.sent > 0;
        const QString none = QStringLiteral("-");
        table.append({printers()[i].label, hasSent ? byteText(entry.sent) : none,
                      hasSent ? durationText(duration(entry)) : none,
                      hasSent ? rateText(meanRate(entry)) : none,
                      m_outcomes[i].isOk() ? QStringLiteral("ok") : m_outcomes[i].what});
    }
    return tableText(table);
}
