// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Printers by their address, and those that the user has given a name.

#ifndef SAVEDPRINTERS_H
#define SAVEDPRINTERS_H

#include "settingsfile.h"

#include <QUrl>
#include <QVector>

#include <functional>

#include <zytlstrust.h>

class QSettings;

namespace zysession
{

struct Printer {
    QString name; ///< as saved; empty for a printer that is known by its address alone
    QUrl url; ///< empty where a saved address is none
    QString token = {}; ///< for commands; empty when none is saved
    QString authorities = {}; ///< PEM file of who may vouch for it; empty: whom the system trusts
    QString fingerprint
        = {}; ///< of the one certificate that it may show; empty for any trusted one
    QString announcedName = {}; ///< of one that was found on the network: any text

    /// The saved or announced name, or the URL when it has none.
    QString label() const;
    /// "bench1 (ws://…)", or the URL alone.
    QString description() const;
    bool isEncrypted() const;
    /// Sets @p trust as authorities and fingerprint say; returns empty, or what is wrong with them.
    /// @p trust trusts nobody then.
    QString readTrust(ZyTlsTrust &trust) const;
    /// The same for a printer that is known to be right.
    ZyTlsTrust trust() const;
};

/// The URL for "ws://host:port", "wss://host:port", or "host:port" with "ws://" left out; an empty
/// URL for anything that names no printer, or a user of one: printers know tokens instead.
QUrl printerUrl(const QString &text);

/// Whether @p text may be the name of a saved printer: letters, digits, '-' and '_', at most 64.
/// No address with a port or a dot is one.
bool isPrinterName(const QString &text);

/**
 * The saved printers, in a file that all programs share: a section "[printers]" of lines
 * "name=URL", and sections "[tokens]", "[authorities]" and "[fingerprints]" for what some of them
 * have besides. Version 1.0 wrote only the first, and leaves the others alone.
 *
 * A file that holds tokens is made readable by its owner only.
 */
class SavedPrinters
{
public:
    /// @p file empty: the file that ZYSLICER_SETTINGS names, else the user's own. It is not touched
    /// yet.
    explicit SavedPrinters(const QString &file = QString());

    QString file() const { return m_file; }

    /// Reads the file anew. Until the first call, and after a fault, no printer is known.
    SettingsFault read();
    /// As last read, by name.
    const QVector<Printer> &printers() const { return m_printers; }
    /// The printer of this name; its url is empty when there is none, or no address is saved.
    Printer find(const QString &name) const;
    /// The printer for a saved name or an address; its url is empty for neither. What could be a
    /// name is no address: a host alone is written with "ws://" or a port.
    Printer resolve(const QString &nameOrAddress) const;

    /// Adds @p printer or replaces the one of its name, then reads the file anew. The name must be
    /// one for which isPrinterName() holds.
    SettingsFault save(const Printer &printer);
    SettingsFault remove(const QString &name);

private:
    SettingsFault change(const std::function<void(QSettings &)> &edit);

    QString m_file;
    QVector<Printer> m_printers;
};

} // namespace zysession

#endif // SAVEDPRINTERS_H
