// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printers that announce themselves by DNS-SD, as they come and go.

#ifndef PRINTERBROWSER_H
#define PRINTERBROWSER_H

#include "foundprinter.h"

#include <QObject>

#include <memory>

namespace zydiscovery
{

/**
 * Looks for printers as long as it lives.
 *
 * A daemon that is not there is waited for; one that restarts or refuses is asked again. All in the
 * thread that made the object; talking to the daemon takes milliseconds there.
 */
class PrinterBrowser : public QObject
{
    Q_OBJECT

public:
    explicit PrinterBrowser(QObject *parent = nullptr);
    ~PrinterBrowser() override;

    /// Those that are there now, by name, each once.
    QVector<FoundPrinter> printers() const;
    /// All that answer at once have been found; others may still come.
    bool isComplete() const;
    /// Why none can be found, in half a sentence; empty while they can.
    QString fault() const;

Q_SIGNALS:
    /// Of the three. May come without a difference.
    void changed();

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace zydiscovery

#endif // PRINTERBROWSER_H
