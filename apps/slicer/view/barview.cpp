// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Progress bars on a terminal, one line per printer, with news scrolling away above them.

#include "barview.h"

#include "standardoutput.h"
#include "wording.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

constexpr int drawInterval = 100; // ms

double fractionOf(const Event &event)
{
    return event.total > 0 ? static_cast<double>(event.received) / static_cast<double>(event.total)
                           : 0;
}

} // namespace

BarView::BarView(const QVector<zysession::Printer> &printers)
    : TextView(printers), m_rows(printers.size())
{
    m_drawing.setSingleShot(true);
    m_drawing.setInterval(drawInterval);
    QObject::connect(&m_drawing, &QTimer::timeout, &m_drawing, [this] { draw(); });
}

void BarView::report(int printer, const Event &event)
{
    QString text = news(printer, event);
    switch (event.kind) {
    case Event::Kind::Reading:
        setNote(printer, event, QStringLiteral("reading ") + byteText(event.received, event.total));
        break;
    case Event::Kind::Offered:
        setNote(printer, event, QStringLiteral("waiting for the printer"));
        break;
    case Event::Kind::Progress:
        m_rows[printer] = progressRow(printer, event);
        break;
    case Event::Kind::Status:
        m_rows[printer] = statusRow(printer, event);
        break;
    case Event::Kind::Stalled:
        m_rows[printer] = stalledRow(printer, event);
        text.clear(); // the row shows it
        break;
    case Event::Kind::Waiting:
        setNote(printer, event, text);
        text.clear();
        break;
    case Event::Kind::Cancelling:
        setNote(printer, event, QStringLiteral("cancelling"));
        break;
    case Event::Kind::Stored:
        m_rows[printer] = storedRow(printer, event);
        break;
    case Event::Kind::Retrying:
        setNote(printer, event, QStringLiteral("waiting to try again"));
        break;
    default:
        break;
    }
    if (text.isEmpty())
        drawSoon();
    else
        scroll(marked(printer, text));
}

void BarView::endPrinter(int printer, const Outcomes &outcomes)
{
    TextView::endPrinter(printer, outcomes);
    const auto failure = std::find_if(outcomes.begin(), outcomes.end(),
                                      [](const Outcome &outcome) { return !outcome.isOk(); });
    if (failure != outcomes.end() && isSeveral())
        m_rows[printer] = {printers()[printer].label(), -1, {failure->what}};
    drawSoon();
}

void BarView::finish()
{
    m_drawing.stop();
    draw();
}

ProgressRow BarView::progressRow(int printer, const Event &event) const
{
    const TransferLog::Entry entry = transfers().entry(printer, event.file);
    const qint64 left = entry.rate.secondsLeft(event.total);
    ProgressRow row{
        label(printer, event), fractionOf(event), {byteText(event.received, event.total)}};
    if (entry.rate.bytesPerSecond() > 0)
        row.columns += rateText(entry.rate.bytesPerSecond());
    if (event.received >= event.total)
        row.columns += QStringLiteral("checking");
    else if (left >= 0)
        row.columns += durationText(left) + QStringLiteral(" left");
    return row;
}

ProgressRow BarView::stalledRow(int printer, const Event &event) const
{
    return {label(printer, event),
            fractionOf(event),
            {byteText(event.received, event.total), silenceText(event)}};
}

ProgressRow BarView::storedRow(int printer, const Event &event) const
{
    const TransferLog::Entry entry = transfers().entry(printer, event.file);
    ProgressRow row{label(printer, event), 1.0, {byteText(event.total)}};
    if (meanRate(entry) > 0)
        row.columns += {rateText(meanRate(entry)), durationText(duration(entry))};
    return row;
}

ProgressRow BarView::statusRow(int printer, const Event &event) const
{
    const auto status = zysession::PrinterStatus::fromReply(event.answer);
    ProgressRow row{label(printer, event), printedFraction(status), {stateText(status.state)}};
    row.columns += QStringLiteral("layer %1/%2").arg(status.layer).arg(status.layerCount);
    const QString remaining = remainingText(status);
    if (!remaining.isEmpty())
        row.columns += remaining + QStringLiteral(" left");
    return row;
}

QString BarView::label(int printer, const Event &event) const
{
    return isSeveral() || event.file.isEmpty() ? printers()[printer].label() : event.file;
}

void BarView::setNote(int printer, const Event &event, const QString &note)
{
    m_rows[printer] = {label(printer, event), -1, {note}};
}

/// Not more often than an eye can follow.
void BarView::drawSoon()
{
    if (!m_drawing.isActive())
        m_drawing.start();
}

/// News goes above the bars.
void BarView::scroll(const QString &lines)
{
    writeOut(eraseText() + lines);
    draw();
}

void BarView::draw()
{
    QString text = eraseText();
    // The last column stays free: writing there makes some terminals wrap.
    const int width = terminalSize().width() - 1;
    for (const ProgressRow &row : qAsConst(m_rows)) {
        if (row.label.isEmpty())
            continue;
        text += progressLine(row, width) + QLatin1Char('\n');
        ++m_drawnLines;
    }
    writeOut(text);
}

/// Back to the first of the lines drawn, and everything below it cleared.
QString BarView::eraseText()
{
    if (m_drawnLines == 0)
        return {};
    QString text = QStringLiteral("\r\033[%1A\033[J").arg(m_drawnLines);
    m_drawnLines = 0;
    return text;
}

} // namespace zyslicer
