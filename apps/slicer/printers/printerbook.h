// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The saved printers: names for URLs, kept in the settings.

#ifndef PRINTERBOOK_H
#define PRINTERBOOK_H

#include "outcome.h"
#include "printerlink.h"

#include <QSettings>

#include <memory>

class PrinterBook
{
public:
    /// @p file empty: the file named by ZYSLICER_SETTINGS, else the user's own.
    explicit PrinterBook(const QString &file);

    /// All saved printers, by name.
    Outcome list(QVector<Printer> &printers);
    Outcome add(const QString &name, const QString &url);
    Outcome remove(const QString &name);

    /// Turns a saved name or a URL into @p printer.
    Outcome resolve(const QString &nameOrUrl, Printer &printer);
    /// Turns all of them; none means the only saved printer.
    Outcome resolveAll(const QStringList &namesOrUrls, QVector<Printer> &printers);

private:
    Outcome resolveName(const QString &name, Printer &printer);
    Outcome open();
    Outcome sync();

    QString m_path;
    std::unique_ptr<QSettings> m_settings; ///< null until open()
};

#endif // PRINTERBOOK_H
