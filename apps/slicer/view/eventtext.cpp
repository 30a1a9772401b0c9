// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a job tells, as a line for people.

#include "eventtext.h"

#include "statustext.h"
#include "units.h"

namespace
{

QString resumedText(const Event &event)
{
    return QStringLiteral("%1: resumed at byte %2 of %3 (%4)")
        .arg(event.file)
        .arg(event.received)
        .arg(event.total)
        .arg(byteText(event.received, event.total));
}

QString restartedText(const Event &event)
{
    return event.file + QStringLiteral(": from the start: the printer holds nothing of it");
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

QString eventText(const Event &event, const Printer &printer)
{
    switch (event.kind) {
    case Event::Kind::Offered:
    case Event::Kind::Progress:
    case Event::Kind::Status:
        return {};
    case Event::Kind::Resumed:
        return resumedText(event);
    case Event::Kind::Restarted:
        return restartedText(event);
    case Event::Kind::Retrying:
        return retryingText(event);
    case Event::Kind::Stored:
        return storedText(event);
    case Event::Kind::PrintChecking:
        return event.file + QStringLiteral(": checking before the print");
    case Event::Kind::PrintStarted:
        return event.file + QStringLiteral(": print started");
    case Event::Kind::Snapshot:
        return statusBlock(printer.description(), event.answer);
    case Event::Kind::Answer:
        return event.text;
    }
    return {};
}
