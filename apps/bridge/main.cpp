// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zybridge: reads its configuration and runs until a signal stops it.

#include "bridge.h"
#include "commandline.h"
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

struct Options {
    std::string file;
    bool isCheck = false;
};

std::optional<int> readOptions(int argc, char **argv, Options &options)
{
    CLI::App app(
        "Connects resin printers to an MQTT broker: their state, commands, files and jobs.",
        "zybridge");
    app.add_option("--config", options.file, "The configuration file, see zybridge(1)")->required();
    app.add_flag("--check-config", options.isCheck,
                 "Say what is wrong with the configuration file and exit");
    zyapp::addVersionFlag(app, "zybridge");
    app.footer("Exit codes: 0 stopped by a signal, or nothing wrong; 2 wrong usage; 3 wrong\n"
               "configuration; 4 the state directory cannot be used; 5 another bridge of the same\n"
               "name is at the broker.");
    return zyapp::parse(app, argc, argv);
}

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
    Options options;
    if (const auto code = readOptions(argc, argv, options))
        return *code;
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zybridge"));
    // The library's debug lines are for its developers: QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(QStringLiteral("zywebsocket.*.debug=false"));
    zybridge::Configuration configuration;
    const QString file = QFileInfo(zyapp::fromArgument(options.file)).absoluteFilePath();
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
