// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What both servers' programs have in common: options, the ready line, the end.

#include "servermain.h"

#include "processusage.h"
#include "unixsignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <csignal>

namespace zybench
{

ServerOptions serverOptions(const QCoreApplication &app)
{
    const QCommandLineOption directory(QStringLiteral("dir"), QStringLiteral("Receive into DIR."),
                                       QStringLiteral("DIR"), QDir::tempPath());
    const QCommandLineOption port(QStringLiteral("port"),
                                  QStringLiteral("Listen on PORT; 0 for any that is free."),
                                  QStringLiteral("PORT"), QStringLiteral("0"));
    const QCommandLineOption protection(
        QStringLiteral("protection"),
        QStringLiteral("Protect the library's server: none, unsynced (all but syncing to disk), "
                       "synced."),
        QStringLiteral("LEVEL"), QStringLiteral("none"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({directory, port, protection});
    parser.process(app);
    return {QDir(parser.value(directory)).absolutePath(), parser.value(port).toUShort(),
            parser.value(protection)};
}

int serve(QCoreApplication &app, quint16 port)
{
    if (port == 0)
        return 1;
    allowManyFiles();
    const zyapp::UnixSignals termination{SIGTERM};
    QObject::connect(&termination, &zyapp::UnixSignals::received, &app, &QCoreApplication::quit);
    QTextStream(stdout) << "listening " << port << Qt::endl;
    const double cpuBefore = cpuSeconds();
    const int code = QCoreApplication::exec();
    printLine({{QStringLiteral("cpu"), cpuSeconds() - cpuBefore},
               {QStringLiteral("maxrss_kib"), peakResidentKib()}});
    return code;
}

} // namespace zybench
