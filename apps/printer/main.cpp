// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter: puts the rooms together and runs until it is told to stop.

#include "announcement.h"
#include "directory.h"
#include "errorline.h"
#include "hostbridge.h"
#include "layerpreview.h"
#include "liveview.h"
#include "machine.h"
#include "machinereport.h"
#include "modelreader.h"
#include "modelstore.h"
#include "printerlog.h"
#include "printeroptions.h"
#include "protection.h"
#include "resources.h"
#include "unixsignals.h"

#include <zyfiletranshandle.h>
#include <zysslechoserver.h>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QUrl>

#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>

namespace zyprinter
{

namespace
{

enum ExitCode {
    Ok = 0,
    BadDirectory = 3,
    PortInUse = 4,
    BadCertificate = 5,
    NotReported = 6,
    TooFewFiles = 7,
};

constexpr int filesForOneself = 16; // beside the connections

int giveUp(ExitCode code, const QString &what, const QString &value, const QString &remedy)
{
    zyapp::printError(QStringLiteral("zyprinter"), what, value, remedy);
    return code;
}

int badDirectory(const char *what, const QString &fault, const QString &path, const char *remedy)
{
    return giveUp(BadDirectory, QStringLiteral("%1 %2").arg(QLatin1String(what), fault), path,
                  QLatin1String(remedy));
}

void printLine(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

/// Each connection has a handle, which is a child of the server.
qsizetype connections(const ZySslEchoServer &server)
{
    return server.findChildren<ZyFileTransHandle *>(QString(), Qt::FindDirectChildrenOnly).size();
}

/// The one that was asked for, or else one of all.
QString address(const PrinterOptions &options, quint16 port)
{
    QUrl url;
    url.setScheme(options.certFile.isEmpty() ? QStringLiteral("ws") : QStringLiteral("wss"));
    url.setHost(options.address.isNull() ? QStringLiteral("127.0.0.1")
                                         : options.address.toString());
    url.setPort(port);
    return url.toString();
}

void showLayers(const Machine &machine, LayerPreview &preview, PrinterLog &log)
{
    QObject::connect(&machine, &Machine::layerExposed, &preview,
                     [&machine, &preview](int, const QByteArray &mask) {
                         const zymodel::ModelHeader &header = machine.model()->header();
                         preview.show(mask, QSize(int(header.width), int(header.height)));
                     });
    QObject::connect(&preview, &LayerPreview::failed, &log, [&log](const QString &reason) {
        log.add(QStringLiteral("no preview: ") + reason);
    });
}

/// As long as the result lives; null for a printer that is not to be found.
std::unique_ptr<zydiscovery::Announcement> announce(const PrinterOptions &options, quint16 port,
                                                    PrinterLog &log)
{
    const auto refuse = [&log](const QString &why) {
        log.add(QStringLiteral("not announced on the network: ") + why);
    };
    if (options.announcedName.isEmpty())
        return {};
    if (options.address.isLoopback()) {
        refuse(QStringLiteral("it listens on %1 alone").arg(options.address.toString()));
        return {};
    }
    auto announcement = std::make_unique<zydiscovery::Announcement>(
        zydiscovery::Announcement::Printer{options.announcedName, options.address, port,
                                           !options.certFile.isEmpty(), !options.token.isEmpty()});
    QObject::connect(announcement.get(), &zydiscovery::Announcement::failed, &log, refuse);
    QObject::connect(announcement.get(), &zydiscovery::Announcement::announced, &log,
                     [&log](const QString &name) {
                         log.add(QStringLiteral("announced on the network as \"%1\"").arg(name));
                     });
    return announcement;
}

/// Log lines, or the live view where there is a terminal for it, until the program is to stop.
int serve(const PrinterOptions &options, const ZySslEchoServer &server, const Machine &machine,
          const ModelStore &store, PrinterLog &log)
{
    const QString url = address(options, server.serverPort());
    printLine(QStringLiteral("zyprinter: listening on ") + url);
    // Without this line nobody knows the port; those that follow may be lost.
    if (const int code = zyapp::onceWritten(QStringLiteral("zyprinter"), Ok, NotReported))
        return code;
    std::optional<LiveView> view;
    if (options.view && isTerminal())
        view.emplace(machine, log, LiveView::Facts{options.name, url, store.directory(), [&server] {
                                                       return connections(server);
                                                   }});
    else
        QObject::connect(&log, &PrinterLog::added, printLine);
    log.add(QStringLiteral("printer \"%1\" keeps its models in %2: %3 there")
                .arg(options.name, store.directory())
                .arg(store.names().size()));
    for (const QString &line : store.leftBehind())
        log.add(line);
    const auto announcement = announce(options, server.serverPort(), log);
    const int code = QCoreApplication::exec();
    log.add(QStringLiteral("stopping"));
    return code;
}

int run(const PrinterOptions &options)
{
    if (!zyapp::canOpen(filesForOneself)) {
        zyapp::printTooFewOpenFiles(QStringLiteral("zyprinter"), filesForOneself);
        return TooFewFiles;
    }
    if (!options.preview.isEmpty()) {
        QString fault = directoryFault(options.preview);
        if (fault.isEmpty())
            fault = LayerPreview::pictureFault(options.preview);
        if (!fault.isEmpty())
            return badDirectory("preview directory", fault, options.preview,
                                "give --preview a directory that can be written");
    }
    ModelStore store(options.directory);
    const QString fault = store.prepare();
    if (!fault.isEmpty())
        return badDirectory("receive directory", fault, options.directory,
                            "give --dir a directory of its own that can be written");
    // The server changes the current directory, so relative paths have been resolved by now.
    std::optional<LayerPreview> preview;
    if (!options.preview.isEmpty())
        preview.emplace(options.preview);

    Machine machine(options.speed);
    machine.setFailAt(options.failAt);
    PrinterLog log;
    ZyServerOptions protection = serverOptions(options, store, log);
    if (!options.certFile.isEmpty()) {
        const QString tlsFault = protection.useTls(options.certFile, options.keyFile);
        if (!tlsFault.isEmpty())
            return giveUp(BadCertificate, tlsFault,
                          options.certFile + QLatin1Char(' ') + options.keyFile,
                          QStringLiteral("give --cert and --key PEM files that belong together"));
    }
    ZySslEchoServer server(options.port, store.incomingDirectory(), protection);
    if (!server.isListening())
        return giveUp(PortInUse,
                      options.address.isNull()
                          ? QStringLiteral("port is in use or not permitted")
                          : QStringLiteral("address is not this machine's, or port is in use or "
                                           "not permitted"),
                      options.address.isNull() ? QString::number(options.port)
                                               : address(options, options.port),
                      QStringLiteral("choose another --port, or 0 for a free one"));

    reportTo(log, machine);
    if (preview)
        showLayers(machine, *preview, log);
    const HostBridge bridge(&server, &machine, &store, &log,
                            {options.token, options.refuse, options.slowCheck});
    return serve(options, server, machine, store, log);
}

} // namespace

} // namespace zyprinter

int main(int argc, char **argv)
{
    zyprinter::PrinterOptions options;
    if (const auto code = zyprinter::readOptions(argc, argv, options))
        return zyapp::onceWritten(QStringLiteral("zyprinter"), *code, zyprinter::NotReported);
    std::signal(SIGXFSZ, SIG_IGN); // a file that may not grow is an error like a full disk
    std::signal(SIGPIPE, SIG_IGN); // the log's reader may go: the printer prints on
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zyprinter"));
    // The library's debug lines are for its developers: QT_LOGGING_RULES brings them back.
    QLoggingCategory::setFilterRules(QStringLiteral("zywebsocket.*.debug=false"));
    zyapp::UnixSignals signalsToStop({SIGINT, SIGTERM, SIGHUP});
    QObject::connect(&signalsToStop, &zyapp::UnixSignals::received, &app, &QCoreApplication::quit);
    return zyprinter::run(options);
}
