// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the command line asks for, as plain values.

#ifndef REQUEST_H
#define REQUEST_H

#include "timelimits.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

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
    QString token;
    QStringList files; ///< send: local paths
    QString remoteName; ///< send: --as; print: the file on the printer
    int compressionLevel = 1; ///< send: --compression
    bool isPrinting = false; ///< send: --print
    bool isWatching = false;
    QJsonObject parameters; ///< set: key to value, both text
    QString savedName; ///< printers add, remove
    QString savedUrl; ///< printers add
    Limits limits;

    QString settingsFile;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
};

#endif // REQUEST_H
