// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The views for people: what they share, and lines for files, pipes and simple terminals.

#include "textview.h"

#include "standardoutput.h"
#include "wording.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

using zysession::PrinterStatus;
using Table = QVector<QStringList>;

constexpr int newsEvery = 10; // percent

QString tableText(const Table &table)
{
    QString text;
    for (const QStringList &cells : table) {
        QString line;
        for (int column = 0; column < cells.size(); ++column) {
            int width = 0;
            for (const QStringList &other : table)
                width = std::max(width, int(other[column].size()));
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

TextView::TextView(const QVector<zysession::Printer> &printers)
    : View(printers), m_transfers(int(printers.size())), m_outcomes(printers.size())
{
}

void TextView::endPrinter(int printer, const Outcome &outcome)
{
    m_outcomes[printer] = outcome;
}

void TextView::finish()
{
    if (isSeveral())
        writeOut(summary());
}

QString TextView::marked(int printer, const QString &text) const
{
    if (!isSeveral())
        return text + QLatin1Char('\n');
    const QStringList plain = text.split(QLatin1Char('\n'));
    QString lines;
    for (const QString &line : plain)
        lines += QStringLiteral("%1: %2\n").arg(printers()[printer].label(), line);
    return lines;
}

QString TextView::summary() const
{
    const bool isTransfer = m_transfers.hasSent();
    Table table{QStringList(QStringLiteral("PRINTER"))
                + (isTransfer ? transferTitles() : QStringList())
                + QStringList(QStringLiteral("RESULT"))};
    for (int i = 0; i < printers().size(); ++i) {
        QStringList cells(printers()[i].label());
        if (isTransfer)
            cells += transferCells(m_transfers.entry(i));
        cells += m_outcomes[i].isOk() ? QStringLiteral("ok") : m_outcomes[i].what;
        table.append(cells);
    }
    return tableText(table);
}

PlainView::PlainView(const QVector<zysession::Printer> &printers)
    : TextView(printers), m_lastStep(printers.size())
{
}

void PlainView::report(int printer, const Event &event)
{
    transfers().note(printer, event);
    QString text;
    if (event.kind == Event::Kind::Progress)
        text = progressText(printer, event);
    else if (event.kind == Event::Kind::Status)
        text = statusText(printer, event);
    else
        text = eventText(event, printers()[printer]);
    if (!text.isEmpty())
        writeOut(marked(printer, text));
}

QString PlainView::progressText(int printer, const Event &event)
{
    if (event.total <= 0)
        return {};
    const qint64 percent = event.received * 100 / event.total;
    if (!isNews(printer, event.file + QString::number(percent / newsEvery)))
        return {};
    return QStringLiteral("%1: %2 % %3 %4")
        .arg(event.file)
        .arg(percent, 3)
        .arg(byteText(event.received, event.total),
             rateText(transfers().entry(printer).rate.bytesPerSecond()));
}

QString PlainView::statusText(int printer, const Event &event)
{
    const PrinterStatus status = PrinterStatus::fromReply(event.answer);
    const int percent = static_cast<int>(status.layerFraction() * 100);
    const QString step = status.word + status.filename + QString::number(percent / newsEvery);
    return isNews(printer, step) ? statusLine(status) : QString();
}

bool PlainView::isNews(int printer, const QString &step)
{
    const bool isNew = step != m_lastStep[printer];
    m_lastStep[printer] = step;
    return isNew;
}

} // namespace zyslicer
