// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyslicer: sends sliced models to resin printers and runs their prints, from the command line.

#include "errorline.h"
#include "fleet.h"
#include "interruption.h"
#include "jsonview.h"
#include "knownprinters.h"
#include "resources.h"
#include "search.h"
#include "sendstep.h"
#include "slicercommands.h"
#include "standardoutput.h"
#include "view.h"

#include <QCoreApplication>
#include <QLoggingCategory>

namespace zyslicer
{

namespace
{

// A thread, a socket and the model, opened several times; and what Qt and the program need.
constexpr int filesForAPrinter = 8;
constexpr int filesForOneself = 8;

/// Debug lines, the library's included, and Qt's warnings are shown only when @p isVerbose.
void installLogFilter(bool isVerbose)
{
    // The library's lines are on by default; next to a progress bar they are noise. So are the
    // warnings of Qt's sockets, whose failures the program reports itself.
    const QString state = isVerbose ? QStringLiteral("true") : QStringLiteral("false");
    QLoggingCategory::setFilterRules(QStringLiteral("zywebsocket.*.debug=%1\nzysession.debug=%1\n"
                                                    "zyslicer.debug=%1\ndefault.warning=%1")
                                         .arg(state));
}

/// Each error once: what keeps several files from a printer is one error.
void printErrors(const Outcomes &outcomes)
{
    QStringList printed;
    for (const Outcome &outcome : outcomes) {
        if (outcome.isOk() || printed.contains(outcome.text()))
            continue;
        printed += outcome.text();
        zyapp::printError(QStringLiteral("zyslicer"), outcome.what, outcome.value, outcome.advice);
    }
}

/// How a run ends that has asked no printer.
int endWith(const Request &request, const Outcomes &outcomes)
{
    for (const Outcome &outcome : outcomes) {
        if (request.isJson && !outcome.isOk())
            writeJsonError(outcome);
    }
    printErrors(outcomes);
    return static_cast<int>(combinedExitCode(outcomes));
}

/// To the reader of the output, what could not be written has not been done.
int exitCodeOnceWritten(int exitCode)
{
    const Outcome written = writingOutcome();
    if (written.isOk())
        return exitCode;
    printErrors({written});
    return exitCode == static_cast<int>(ExitCode::Ok) ? static_cast<int>(written.code) : exitCode;
}

int runJobs(const Request &request, const QVector<zysession::Printer> &printers)
{
    Interruption interruption;
    const std::unique_ptr<View> view = makeView(request, printers);
    Fleet fleet(request, printers);
    QObject::connect(&interruption, &Interruption::interrupted, &fleet, &Fleet::interrupt);
    QObject::connect(&fleet, &Fleet::reported, &fleet,
                     [&](int printer, const Event &event) { view->report(printer, event); });
    QObject::connect(
        &fleet, &Fleet::printerEnded, &fleet,
        [&](int printer, const Outcomes &outcomes) { view->endPrinter(printer, outcomes); });
    QObject::connect(&fleet, &Fleet::ended, qApp, &QCoreApplication::quit);
    fleet.start();
    QCoreApplication::exec();
    view->finish();
    Outcomes all;
    for (const Outcomes &outcomes : fleet.outcomes())
        all += outcomes;
    printErrors(all);
    view->sumUp();
    return static_cast<int>(combinedExitCode(all));
}

int run(const Request &request)
{
    switch (request.command) {
    case Request::Command::PrintersList:
    case Request::Command::PrintersAdd:
    case Request::Command::PrintersRemove:
    case Request::Command::PrintersGroup:
        return endWith(request, {runPrintersCommand(request)});
    case Request::Command::Discover:
        return endWith(request, {runDiscoverCommand(request)});
    default:
        break;
    }
    const Outcomes faults = checkModelFiles(request.files);
    if (!faults.isEmpty())
        return endWith(request, faults);
    QVector<zysession::Printer> printers;
    const Outcome outcome = findPrinters(request, printers);
    if (!outcome.isOk())
        return endWith(request, {outcome});
    const int files = filesForOneself + filesForAPrinter * int(printers.size());
    if (!zyapp::canOpen(files))
        return endWith(request,
                       {{ExitCode::LocalFile, QStringLiteral("too few files may be open at once"),
                         QStringLiteral("%1 more are needed").arg(files),
                         QStringLiteral("raise the limit with 'ulimit -n', or name fewer "
                                        "printers")}});
    return runJobs(request, printers);
}

int parseAndRun(int argc, char **argv)
{
    Request request;
    if (const std::optional<int> exitCode = parseRequest(argc, argv, request))
        return exitCodeOnceWritten(*exitCode);
    installLogFilter(request.isVerbose);
    return exitCodeOnceWritten(run(request));
}

} // namespace

} // namespace zyslicer

int main(int argc, char **argv)
{
    zyslicer::reserveStreams();
    const QCoreApplication app(argc, argv);
    return zyslicer::parseAndRun(argc, argv);
}
