// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Lines for files, pipes and terminals on which nothing can be drawn over.

#include "plainview.h"

#include "eventtext.h"
#include "printphase.h"
#include "statustext.h"
#include "terminal.h"
#include "units.h"
#include "wirewords.h"

namespace
{

constexpr int tellEvery = 10; // percent

} // namespace

PlainView::PlainView(const QVector<Printer> &printers)
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
        terminal::write(marked(printer, text));
}

QString PlainView::progressText(int printer, const Event &event)
{
    if (event.total <= 0)
        return {};
    const qint64 percent = event.received * 100 / event.total;
    const QString step = event.file + QString::number(percent / tellEvery);
    if (step == m_lastStep[printer])
        return {};
    m_lastStep[printer] = step;
    return QStringLiteral("%1: %2 % %3 %4")
        .arg(event.file)
        .arg(percent, 3)
        .arg(byteText(event.received, event.total),
             rateText(transfers().entry(printer).rate.bytesPerSecond()));
}

QString PlainView::statusText(int printer, const Event &event)
{
    const int percent = static_cast<int>(layerFraction(event.answer) * 100);
    const QString step = event.answer.value(wire::printStatus).toString() + event.file
        + QString::number(percent / tellEvery);
    if (step == m_lastStep[printer])
        return {};
    m_lastStep[printer] = step;
    return statusLine(event.answer);
}
