// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What happens on the printer, as lines of text with the time of day.

#ifndef PRINTERLOG_H
#define PRINTERLOG_H

#include <QObject>
#include <QStringList>

namespace zyprinter
{

class PrinterLog : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Adds an event. Control characters, which names from the wire may hold, are made visible.
    void add(const QString &text);
    /// The last events, the newest last.
    const QStringList &recent() const { return m_recent; }

Q_SIGNALS:
    void added(const QString &line);

private:
    QStringList m_recent;
};

} // namespace zyprinter

#endif // PRINTERLOG_H
