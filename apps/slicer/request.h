// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the command line asks for, as plain values.

#ifndef REQUEST_H
#define REQUEST_H

#include "printerlink.h"
#include "printerstatus.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <zysendoptions.h>

namespace zyslicer
{

/// One file to send.
struct ModelFile {
    QString path; ///< local
    QString name; ///< on the printer
};

struct Request {
    enum class Command {
        Send,
        Print,
        Pause,
        Stop,
        Status,
        Set,
        Version,
        Cancel,
        PrintersList,
        PrintersAdd,
        PrintersRemove,
        PrintersGroup,
        Discover,
    };

    Command command = Command::Status;
    QStringList printers; ///< URLs, saved names, groups or "dnssd:NAME", as given with --to
    bool isAll = false; ///< all saved printers instead
    QString token; ///< null when none is given: each printer's saved one counts
    QString authorities; ///< --ca: a PEM file; null when not given, empty to forget a saved one
    QString fingerprint; ///< the same of --fingerprint
    QVector<ModelFile> files; ///< send
    bool isPrinting = false; ///< send: --print
    bool isWatching = false;
    bool isWaiting = false; ///< for a printer that is busy or not there
    bool isKeeping = false; ///< send: when interrupted, the printer keeps its part
    QString printName; ///< print: the file on the printer
    zysession::Parameters parameters; ///< set
    QString savedName; ///< printers add, remove, group
    QStringList members; ///< printers group: saved names
    QString savedUrl; ///< printers add
    zysession::TimeLimits limits; ///< of commands
    ZySendOptions sending; ///< its retries and pauses count for following a print, too
    int searchTime = 3000; ///< ms at most, discover
    int pollInterval = 1000; ///< ms between two questions for the printer's status

    QString settingsFile;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
};

} // namespace zyslicer

#endif // REQUEST_H
