// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Both classes for systems without Avahi's client library: they say so.

#include "announcement.h"
#include "printerbrowser.h"

namespace zydiscovery
{

namespace
{

QString reason()
{
    return QStringLiteral("this program was built without Avahi");
}

} // namespace

class Announcement::Private
{
};

Announcement::Announcement(const Printer &, QObject *parent) : QObject(parent)
{
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT failed(reason()); }, Qt::QueuedConnection);
}

Announcement::~Announcement() = default;

class PrinterBrowser::Private
{
};

PrinterBrowser::PrinterBrowser(QObject *parent) : QObject(parent)
{
    QMetaObject::invokeMethod(this, &PrinterBrowser::changed, Qt::QueuedConnection);
}

PrinterBrowser::~PrinterBrowser() = default;

QVector<FoundPrinter> PrinterBrowser::printers() const
{
    return {};
}

bool PrinterBrowser::isComplete() const
{
    return false;
}

QString PrinterBrowser::fault() const
{
    return reason();
}

} // namespace zydiscovery
