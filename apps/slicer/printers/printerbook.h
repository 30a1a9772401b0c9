// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The saved printers: names for URLs, kept in the settings.

#ifndef PRINTERBOOK_H
#define PRINTERBOOK_H

#include "outcome.h"
#include "printerlink.h"

#include <QSettings>

class PrinterBook
{
public:
    /// @p file empty: the file named by ZYSLICER_SETTINGS, else the user's own.
    explicit PrinterBook(const QString &file);

    QVector<Printer> printers() const; ///< by name
    Outcome add(const QString &name, const QString &url);
    Outcome remove(const QString &name);

    /// Turns a saved name or a URL into @p printer.
    Outcome resolve(const QString &nameOrUrl, Printer &printer) const;
    /// Turns all of them; none means the only saved printer.
    Outcome resolveAll(const QStringList &namesOrUrls, QVector<Printer> &printers) const;

private:
    Outcome sync();

    QSettings m_settings;
};

#endif // PRINTERBOOK_H
