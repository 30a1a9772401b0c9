// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The views for people: what they share, and lines for files, pipes and simple terminals.

#include "textview.h"

#include "errorline.h"
#include "progressline.h"
#include "standardoutput.h"
#include "table.h"
#include "wording.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

using zysession::PrinterStatus;

constexpr int newsEvery = 10; // percent

/// The same while nothing changes but the time.
QString stepOf(const Event &event)
{
    return event.kind == Event::Kind::Waiting ? event.text
                                              : QStringLiteral("stalled %1").arg(event.received);
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
    const double rate = meanRate(entry);
    return {byteText(entry.sent), durationText(duration(entry)), rate > 0 ? rateText(rate) : none};
}

} // namespace

TextView::TextView(const QVector<zysession::Printer> &printers)
    : View(printers), m_transfers(int(printers.size())), m_outcomes(printers.size()),
      m_snapshots(printers.size())
{
}

void TextView::endPrinter(int printer, const Outcomes &outcomes)
{
    m_outcomes[printer] = outcomes;
}

/// A row for each printer, or for each of its files where there are several.
void TextView::sumUp()
{
    if (!isSeveral() && !hasSeveralFiles())
        return;
    if (std::any_of(m_snapshots.begin(), m_snapshots.end(),
                    [](const auto &status) { return status.has_value(); })) {
        writeOut(tableText(statusTable()));
        return;
    }
    const bool isTransfer = m_transfers.hasSent();
    Table table{(isSeveral() ? QStringList(QStringLiteral("PRINTER")) : QStringList())
                + (hasSeveralFiles() ? QStringList(QStringLiteral("FILE")) : QStringList())
                + (isTransfer ? transferTitles() : QStringList())
                + QStringList(QStringLiteral("RESULT"))};
    for (int printer = 0; printer < printers().size(); ++printer) {
        for (const Outcome &outcome : m_outcomes[printer])
            table.append(summaryRow(printer, outcome, isTransfer));
    }
    writeOut(tableText(table));
}

TextView::Table TextView::statusTable() const
{
    Table table{{QStringLiteral("PRINTER"), QStringLiteral("STATE"), QStringLiteral("FILE"),
                 QStringLiteral("LAYER"), QStringLiteral("REMAINING")}};
    const QString none = QStringLiteral("-");
    const auto orNone = [&](const QString &text) { return text.isEmpty() ? none : text; };
    for (int i = 0; i < printers().size(); ++i) {
        const QString label = printers()[i].label();
        if (const auto &status = m_snapshots[i])
            table.append({label, stateText(status->state), orNone(status->filename),
                          orNone(layerText(*status)), orNone(remainingText(*status))});
        else
            table.append({label, m_outcomes[i].first().what, none, none, none});
    }
    return table;
}

QStringList TextView::summaryRow(int printer, const Outcome &outcome, bool isTransfer) const
{
    QStringList cells;
    if (isSeveral())
        cells += printers()[printer].label();
    if (hasSeveralFiles())
        cells += outcome.file;
    if (isTransfer)
        cells += transferCells(m_transfers.entry(printer, outcome.file));
    return cells + QStringList(outcome.isOk() ? QStringLiteral("ok") : outcome.what);
}

bool TextView::hasSeveralFiles() const
{
    return m_outcomes.first().size() > 1;
}

QString TextView::news(int printer, const Event &event)
{
    m_transfers.note(printer, event);
    if (event.kind == Event::Kind::Snapshot && isSeveral()) {
        m_snapshots[printer] = PrinterStatus::fromReply(event.answer);
        return {};
    }
    return eventText(event, printers()[printer]);
}

QString TextView::marked(int printer, const QString &text) const
{
    const QString mark
        = isSeveral() ? printers()[printer].label() + QStringLiteral(": ") : QString();
    const QStringList plain = text.split(QLatin1Char('\n'));
    QString lines;
    for (const QString &line : plain) // names and words come from the printer, too
        lines += mark + zyapp::onOneLine(line) + QLatin1Char('\n');
    return lines;
}

PlainView::PlainView(const QVector<zysession::Printer> &printers)
    : TextView(printers), m_lastStep(printers.size())
{
}

void PlainView::report(int printer, const Event &event)
{
    QString text = news(printer, event);
    if (event.kind == Event::Kind::Progress)
        text = progressText(printer, event);
    else if (event.kind == Event::Kind::Reading)
        text = readingText(printer, event);
    else if (event.kind == Event::Kind::Status)
        text = statusText(printer, event);
    else if (event.kind == Event::Kind::Stalled || event.kind == Event::Kind::Waiting)
        text = isNews(printer, stepOf(event)) ? text : QString();
    if (!text.isEmpty())
        writeOut(marked(printer, text));
}

QString PlainView::progressText(int printer, const Event &event)
{
    if (event.total <= 0)
        return {};
    const int percent
        = percentOf(static_cast<double>(event.received) / static_cast<double>(event.total));
    if (!isNews(printer, event.file + QString::number(percent / newsEvery)))
        return {};
    const QString text = QStringLiteral("%1: %2 % %3")
                             .arg(event.file, QString::number(percent).rightJustified(3),
                                  byteText(event.received, event.total));
    const double rate = transfers().entry(printer, event.file).rate.bytesPerSecond();
    return rate > 0 ? text + QLatin1Char(' ') + rateText(rate) : text;
}

QString PlainView::readingText(int printer, const Event &event)
{
    const QString text = event.file + QStringLiteral(": reading before it is sent");
    return isNews(printer, text) ? text : QString();
}

QString PlainView::statusText(int printer, const Event &event)
{
    const PrinterStatus status = PrinterStatus::fromReply(event.answer);
    const int percent = percentOf(printedFraction(status));
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
