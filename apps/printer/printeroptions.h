// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter's command line.

#ifndef PRINTEROPTIONS_H
#define PRINTEROPTIONS_H

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <optional>

namespace zyprinter
{

struct PrinterOptions {
    QString directory;
    QHostAddress address; ///< null: all
    quint16 port = 0; ///< 0: the system chooses
    QString token; ///< empty: none is needed
    double speed = 1000;
    QString name;
    QString announcedName; ///< empty: not announced
    int failAt = 0; ///< layer; 0: none
    double slowCheck = 0; ///< seconds
    bool refuse = false;
    bool view = false;
    QString preview; ///< directory; empty: none

    bool unprotected = false; ///< none of the following
    qint64 maxSize = 4096; ///< MiB of a received file
    qint64 keepFree = 64; ///< MiB of the receive directory's file system
    int maxConnections = 64;
    QStringList origins; ///< of the web pages that may connect
    double silence = 15; ///< seconds
    QString certFile; ///< PEM; empty: no TLS
    QString keyFile; ///< PEM
};

/// Nothing when the program is to go on, otherwise its exit code.
std::optional<int> readOptions(int argc, char **argv, PrinterOptions &options);

} // namespace zyprinter

#endif // PRINTEROPTIONS_H
