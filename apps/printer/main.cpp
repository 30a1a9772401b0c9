// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter: puts the rooms together and runs until it is told to stop.

#include "errorline.h"
#include "eventlog.h"
#include "hostbridge.h"
#include "machine.h"
#include "modelreader.h"
#include "modelstore.h"
#include "options.h"
#include "unixsignals.h"

#include <zysslechoserver.h>

#include <QCoreApplication>
#include <QLoggingCategory>

#include <csignal>
#include <cstdio>

namespace
{

enum ExitCode { Ok = 0, BadDirectory = 3, PortInUse = 4 };

int giveUp(ExitCode code, const QString &what, const QString &value, const QString &remedy)
{
    zyapp::printError(QStringLiteral("zyprinter"), what, value, remedy);
    return code;
}

void printLine(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

/// What the machine does, in words; nothing for the steps in between.
QString description(const Machine &machine)
{
    const QString job = QStringLiteral("\"%1\"").arg(machine.job());
    switch (machine.state()) {
    case Machine::State::Checking:
        return QStringLiteral("checking ") + job;
    case Machine::State::Printing:
        return machine.layer() == 0
            ? QStringLiteral("printing %1, %2 layers").arg(job).arg(machine.model()->layerCount())
            : QStringLiteral("going on with ") + job;
    case Machine::State::Paused:
        return QStringLiteral("paused after layer %1").arg(machine.layer());
    case Machine::State::Complete:
        return QStringLiteral("complete: ") + job;
    case Machine::State::Stopped:
        return QStringLiteral("stopped: ") + job;
    case Machine::State::Failed:
        return QStringLiteral("failed: %1: %2").arg(job, machine.failure());
    default:
        return {};
    }
}

void logMachine(const Machine &machine, EventLog &log)
{
    QObject::connect(&machine, &Machine::stateChanged, &log, [&machine, &log] {
        const QString text = description(machine);
        if (!text.isEmpty())
            log.add(text);
    });
    QObject::connect(&machine, &Machine::layerExposed, &log, [&machine, &log](int layer) {
        constexpr int lines = 10;
        const int count = machine.model()->layerCount();
        if (layer * lines / count != (layer - 1) * lines / count)
            log.add(QStringLiteral("layer %1 of %2").arg(layer).arg(count));
    });
}

int run(const Options &options)
{
    ModelStore store(options.directory);
    const QString fault = store.prepare();
    if (!fault.isEmpty())
        return giveUp(BadDirectory, QStringLiteral("receive directory ") + fault, options.directory,
                      QStringLiteral("give --dir a directory that can be written"));

    Machine machine(options.speed);
    machine.setFailAt(options.failAt);
    // The library reads a certificate that it never uses; an empty file spares Qt's warnings.
    const QString nothing = QStringLiteral("/dev/null");
    ZySslEchoServer server(options.port, nothing, nothing, store.incomingDirectory(), nullptr);
    if (!server.isListening())
        return giveUp(PortInUse, QStringLiteral("port is in use or not permitted"),
                      QString::number(options.port),
                      QStringLiteral("choose another --port, or 0 for a free one"));

    EventLog log;
    QObject::connect(&log, &EventLog::added, printLine);
    logMachine(machine, log);
    const HostBridge bridge(&server, &machine, &store, &log,
                            {options.token, options.refuse, options.slowCheck});
    printLine(QStringLiteral("zyprinter: listening on ws://127.0.0.1:%1").arg(server.serverPort()));
    log.add(QStringLiteral("printer \"%1\" keeps its models in %2: %3 there")
                .arg(options.name, store.directory())
                .arg(store.names().size()));
    const int code = QCoreApplication::exec();
    log.add(QStringLiteral("stopping"));
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    if (const auto code = readOptions(argc, argv, options))
        return *code;
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zyprinter"));
    // The library's debug lines are for its developers: QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(QStringLiteral("zywebsocket.*.debug=false"));
    zyapp::UnixSignals signalsToStop({SIGINT, SIGTERM, SIGHUP});
    QObject::connect(&signalsToStop, &zyapp::UnixSignals::received, &app, &QCoreApplication::quit);
    return run(options);
}
