// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyslicer: sends sliced models to resin printers and runs their prints, from the command line.

#include "errorline.h"
#include "fleet.h"
#include "interruption.h"
#include "jobsteps.h"
#include "jsonview.h"
#include "printerbook.h"
#include "printerscommand.h"
#include "request.h"
#include "requestparser.h"
#include "slicerlog.h"
#include "terminal.h"
#include "view.h"

#include <QCoreApplication>

namespace
{

int exitWith(const Outcome &outcome)
{
    if (!outcome.isOk())
        zyapp::printError(QStringLiteral("zyslicer"), outcome.what, outcome.value, outcome.advice);
    return static_cast<int>(outcome.code);
}

/// How a run ends that has asked no printer.
int endWith(const Request &request, const Outcome &outcome)
{
    if (request.isJson && !outcome.isOk())
        writeJsonError(outcome);
    return exitWith(outcome);
}

/// What could not be told has not been done for whoever reads it.
int exitCodeOnceWritten(int exitCode)
{
    const Outcome written = terminal::writingOutcome();
    if (written.isOk())
        return exitCode;
    const int failure = exitWith(written);
    return exitCode == static_cast<int>(ExitCode::Ok) ? failure : exitCode;
}

int runJobs(const Request &request, const QVector<Printer> &printers)
{
    Interruption interruption;
    Fleet fleet;
    const std::unique_ptr<View> view = makeView(request, printers);
    for (const Printer &printer : printers)
        fleet.add(printer, request.limits, jobSteps(request));
    QObject::connect(&interruption, &Interruption::interrupted, &fleet, &Fleet::interrupt);
    QObject::connect(&fleet, &Fleet::reported, &fleet,
                     [&](int printer, const Event &event) { view->report(printer, event); });
    QObject::connect(
        &fleet, &Fleet::printerEnded, &fleet,
        [&](int printer, const Outcome &outcome) { view->endPrinter(printer, outcome); });
    QObject::connect(&fleet, &Fleet::ended, qApp, &QCoreApplication::quit);
    fleet.start();
    QCoreApplication::exec();
    view->finish();
    for (const Outcome &outcome : fleet.outcomes())
        exitWith(outcome);
    return static_cast<int>(combinedExitCode(fleet.outcomes()));
}

int run(const Request &request)
{
    PrinterBook book(request.settingsFile);
    switch (request.command) {
    case Request::Command::PrintersList:
    case Request::Command::PrintersAdd:
    case Request::Command::PrintersRemove:
        return endWith(request, runPrintersCommand(request, book));
    default:
        break;
    }
    QVector<Printer> printers;
    Outcome outcome = book.resolveAll(request.printers, printers);
    // Before any printer is asked, so that nothing is half done for a mistake here.
    if (outcome.isOk())
        outcome = checkModelFiles(modelFiles(request));
    if (!outcome.isOk())
        return endWith(request, outcome);
    return runJobs(request, printers);
}

} // namespace

int main(int argc, char **argv)
{
    terminal::reserveStreams();
    const QCoreApplication app(argc, argv);
    Request request;
    if (const std::optional<int> exitCode = parseRequest(argc, argv, request))
        return exitCodeOnceWritten(*exitCode);
    installLogFilter(request.isVerbose);
    return exitCodeOnceWritten(run(request));
}
