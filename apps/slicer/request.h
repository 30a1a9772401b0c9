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

namespace zyslicer
{

/// How long to wait for what, in ms, and how often to try again.
struct Limits : zysession::TimeLimits {
    int stall = 15000; ///< until a chunk is acknowledged
    int retries = 5; ///< failures in a row, without a byte gained, that are tolerated
    int firstBackOff = 1000; ///< before the first retry; doubles with each further one
    int longestBackOff = 30000;
    int pollInterval = 1000; ///< between two questions for the printer's status
};

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
    };

    Command command = Command::Status;
    QStringList printers; ///< URLs or saved names, as given with --to
    QString token; ///< null when none is given: each printer's saved one counts
    QVector<ModelFile> files; ///< send
    int compressionLevel = 1; ///< send: --compression
    bool isPrinting = false; ///< send: --print
    bool isWatching = false;
    QString printName; ///< print: the file on the printer
    zysession::Parameters parameters; ///< set
    QString savedName; ///< printers add, remove
    QString savedUrl; ///< printers add
    Limits limits;

    QString settingsFile;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
};

} // namespace zyslicer

#endif // REQUEST_H
