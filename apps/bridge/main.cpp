// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zybridge: reads its configuration and runs until a signal stops it.

#include "bridge.h"
#include "bridgeoptions.h"
#include "errorline.h"
#include "unixsignals.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>

#include <csignal>
#include <cstdio>

namespace
{

enum ExitCode { Ok = 0, BadConfiguration = 3, BadState = 4, NameTaken = 5 };

void printLine(const QString &line)
{
    std::printf("zybridge: %s\n", qPrintable(zyapp::onOneLine(line)));
    std::fflush(stdout);
}

int run(const zybridge::Configuration &configuration)
{
    zybridge::Bridge bridge(configuration);
    QObject::connect(&bridge, &zybridge::Bridge::said, printLine);
    QObject::connect(&bridge, &zybridge::Bridge::nameTaken,
                     [] { QCoreApplication::exit(NameTaken); });
    const auto giveUp = [&](const QString &fault) {
        zyapp::printError(QStringLiteral("zybridge"), fault, configuration.stateDirectory,
                          QStringLiteral("give bridge/state a directory of its own with space"));
        QCoreApplication::exit(BadState);
    };
    QObject::connect(&bridge, &zybridge::Bridge::ledgerFailed, giveUp);
    const QString fault = bridge.start();
    if (!fault.isEmpty()) {
        giveUp(fault);
        return BadState;
    }
    printLine(QStringLiteral("%1 serves %2 printers")
                  .arg(configuration.name)
                  .arg(configuration.printers.size()));
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    zybridge::BridgeOptions options;
    if (const auto code = zybridge::readOptions(argc, argv, options))
        return *code;
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zybridge"));
    // The library's debug lines are for its developers: QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(QStringLiteral("zywebsocket.*.debug=false"));
    zybridge::Configuration configuration;
    const QString file = QFileInfo(options.file).absoluteFilePath();
    const QStringList faults = configuration.read(file);
    for (const QString &fault : faults)
        std::fprintf(stderr, "zybridge: %s\n", qPrintable(zyapp::onOneLine(fault)));
    if (!faults.isEmpty())
        return BadConfiguration;
    if (options.isCheck) {
        printLine(QStringLiteral("nothing wrong with %1").arg(file));
        return Ok;
    }
    zyapp::UnixSignals signalsToStop({SIGINT, SIGTERM, SIGHUP});
    QObject::connect(&signalsToStop, &zyapp::UnixSignals::received, &app, &QCoreApplication::quit);
    return run(configuration);
}
