// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What people read: amounts, times, the printer's status, events.

#include "wording.h"

#include "progressline.h"

#include <algorithm>

namespace zyslicer
{

namespace
{

using zysession::PrinterStatus;

struct Unit {
    double size;
    const char *name;
};

Unit unitFor(double bytes)
{
    static constexpr Unit units[] = {
        {1024.0 * 1024 * 1024, "GiB"},
        {1024.0 * 1024, "MiB"},
        {1024.0, "KiB"},
    };
    for (const Unit &unit : units) {
        if (bytes >= unit.size)
            return unit;
    }
    return {1.0, "B"};
}

QString numberIn(const Unit &unit, double bytes)
{
    return QString::number(bytes / unit.size, 'f', unit.size > 1.0 ? 1 : 0);
}

QString row(const QString &name, const QString &value)
{
    if (value.isEmpty())
        return {};
    return name.leftJustified(19) + value + QLatin1Char('\n');
}

/// All that the printer reports, one line each.
QString statusBlock(const QString &printer, const PrinterStatus &status)
{
    QString block = row(QStringLiteral("printer"), printer)
        + row(QStringLiteral("state"), stateText(status.state))
        + row(QStringLiteral("file"), status.filename)
        + row(QStringLiteral("layer"), layerText(status))
        + row(QStringLiteral("remaining"), remainingText(status))
        + row(QStringLiteral("layer thickness"), status.layerThickness)
        + row(QStringLiteral("resin"), status.resin);
    for (const QString &key : zysession::parameterKeys())
        block += row(key, status.parameters.value(key));
    block.chop(1);
    return block;
}

QString resumedText(const Event &event)
{
    return QStringLiteral("%1: resumed at byte %2 of %3 (%4)")
        .arg(event.file, QString::number(event.received), QString::number(event.total),
             byteText(event.received, event.total));
}

QString retryingText(const Event &event)
{
    const QString news = QStringLiteral("%1, retry %2 in %3 s")
                             .arg(event.text)
                             .arg(event.retry)
                             .arg(event.delay / 1000.0);
    return event.file.isEmpty() ? news : event.file + QStringLiteral(": ") + news;
}

QString storedText(const Event &event)
{
    QString text = QStringLiteral("%1: sent, %2").arg(event.file, byteText(event.total));
    if (event.text != event.file)
        text += QStringLiteral(", stored as %1 (the name of the transfer it resumed)")
                    .arg(event.text);
    if (event.checkState == 1)
        text += QStringLiteral(", check passed");
    return text;
}

} // namespace

QString byteText(qint64 bytes)
{
    const auto amount = static_cast<double>(bytes);
    const Unit unit = unitFor(amount);
    return numberIn(unit, amount) + QLatin1Char(' ') + QLatin1String(unit.name);
}

QString byteText(qint64 bytes, qint64 total)
{
    const Unit unit = unitFor(static_cast<double>(total));
    const QString whole = numberIn(unit, static_cast<double>(total));
    QString part = numberIn(unit, static_cast<double>(bytes));
    constexpr double step = 0.1;
    if (bytes < total && part == whole && unit.size > 1.0) // rounded up, it would look complete
        part = numberIn(unit, static_cast<double>(bytes) - step * unit.size);
    return part + QLatin1Char('/') + whole + QLatin1Char(' ') + QLatin1String(unit.name);
}

QString rateText(double bytesPerSecond)
{
    const Unit unit = unitFor(bytesPerSecond);
    return numberIn(unit, bytesPerSecond) + QLatin1Char(' ') + QLatin1String(unit.name)
        + QLatin1String("/s");
}

QString durationText(qint64 seconds)
{
    QString minutesAndSeconds
        = QStringLiteral("%1:%2")
              .arg(seconds / 60 % 60, seconds >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
              .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    if (seconds < 3600)
        return minutesAndSeconds;
    return QStringLiteral("%1:%2").arg(seconds / 3600).arg(minutesAndSeconds);
}

QString stateText(PrinterStatus::State state)
{
    switch (state) {
    case PrinterStatus::State::Ready:
        return QStringLiteral("idle");
    case PrinterStatus::State::Printing:
        return QStringLiteral("printing");
    case PrinterStatus::State::Complete:
        return QStringLiteral("complete");
    case PrinterStatus::State::Failed:
        return QStringLiteral("failed");
    case PrinterStatus::State::Ended:
        return QStringLiteral("ended");
    case PrinterStatus::State::Paused:
        return QStringLiteral("paused");
    case PrinterStatus::State::Halting:
        return QStringLiteral("stopping");
    case PrinterStatus::State::Completing:
        return QStringLiteral("completing");
    case PrinterStatus::State::TokenRejected:
        return QStringLiteral("token rejected");
    case PrinterStatus::State::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

double printedFraction(const PrinterStatus &status)
{
    constexpr double lastLayer = 0.999; // it is still being printed
    const bool isUnderWay = status.hasJob() && status.state != PrinterStatus::State::Completing;
    return isUnderWay ? std::min(status.layerFraction(), lastLayer) : status.layerFraction();
}

QString layerText(const PrinterStatus &status)
{
    const double fraction = printedFraction(status);
    if (fraction < 0)
        return {};
    return QStringLiteral("%1 of %2 (%3 %)")
        .arg(status.layer)
        .arg(status.layerCount)
        .arg(percentOf(fraction));
}

QString remainingText(const PrinterStatus &status)
{
    const qint64 seconds = status.remainingSeconds();
    return seconds < 0 ? status.remainingTime : durationText(seconds);
}

QString statusLine(const PrinterStatus &status)
{
    QString line = stateText(status.state);
    if (!status.filename.isEmpty())
        line += QLatin1Char(' ') + status.filename;
    const QString layers = layerText(status);
    if (!layers.isEmpty())
        line += QStringLiteral(", layer ") + layers;
    const QString remaining = remainingText(status);
    if (!remaining.isEmpty())
        line += QStringLiteral(", remaining ") + remaining;
    return line;
}

QString silenceText(const Event &event)
{
    return QStringLiteral("no acknowledgement for %1 s").arg(event.delay / 1000);
}

QString eventText(const Event &event, const zysession::Printer &printer)
{
    switch (event.kind) {
    case Event::Kind::Reading:
    case Event::Kind::Offered:
    case Event::Kind::Progress:
    case Event::Kind::Status:
        return {};
    case Event::Kind::Resumed:
        return resumedText(event);
    case Event::Kind::Restarted:
        return event.file + QStringLiteral(": from the start: the printer holds nothing of it");
    case Event::Kind::Retrying:
        return retryingText(event);
    case Event::Kind::Stalled:
        return event.file + QStringLiteral(": ") + silenceText(event);
    case Event::Kind::Waiting:
        return event.text + QStringLiteral("; waiting for it");
    case Event::Kind::Cancelling:
        return event.file + QStringLiteral(": cancelling; again to leave at once");
    case Event::Kind::Stored:
        return storedText(event);
    case Event::Kind::FileEnded:
        return event.outcome.isOk() ? QString()
                                    : event.file + QStringLiteral(": ") + event.outcome.what;
    case Event::Kind::PrintChecking:
        return event.file + QStringLiteral(": checking before the print");
    case Event::Kind::PrintStarted:
        return event.file
            + (event.isResumed ? QStringLiteral(": the paused print goes on")
                               : QStringLiteral(": print started"));
    case Event::Kind::Snapshot:
        return statusBlock(printer.description(), PrinterStatus::fromReply(event.answer));
    case Event::Kind::Answer:
        return event.text;
    }
    return {};
}

} // namespace zyslicer
