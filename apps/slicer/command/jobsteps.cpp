// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The steps of the job that a request makes on each printer.

#include "jobsteps.h"

#include "commandstep.h"
#include "followstep.h"
#include "printstep.h"
#include "request.h"
#include "setstep.h"
#include "transferstep.h"

#include <QFileInfo>

namespace
{

StepMaker commandStep(const Command &command)
{
    return [command](PrinterLink &link, JobNotes &) {
        return std::make_unique<CommandStep>(link, command);
    };
}

StepMaker followStep(FollowStep::Mode mode, const QString &token)
{
    return [mode, token](PrinterLink &link, JobNotes &) {
        return std::make_unique<FollowStep>(link, mode, token);
    };
}

std::vector<StepMaker> sendSteps(const Request &request)
{
    std::vector<StepMaker> steps;
    const QVector<ModelFile> files = modelFiles(request);
    for (const ModelFile &file : files) {
        steps.emplace_back([file](PrinterLink &link, JobNotes &notes) {
            return std::make_unique<TransferStep>(link, notes, file);
        });
    }
    return steps;
}

/// @p name empty: what was just sent.
void appendPrint(std::vector<StepMaker> &steps, const Request &request, const QString &name)
{
    const QString token = request.token;
    steps.emplace_back([name, token](PrinterLink &link, JobNotes &notes) {
        return std::make_unique<PrintStep>(link, notes, name, token);
    });
    if (request.isWatching)
        steps.push_back(followStep(FollowStep::Mode::UntilDone, token));
}

} // namespace

QVector<ModelFile> modelFiles(const Request &request)
{
    QVector<ModelFile> files;
    for (const QString &path : request.files) {
        const QString name
            = request.remoteName.isNull() ? QFileInfo(path).fileName() : request.remoteName;
        files.append({path, name, request.compressionLevel});
    }
    return files;
}

std::vector<StepMaker> jobSteps(const Request &request)
{
    std::vector<StepMaker> steps;
    switch (request.command) {
    case Request::Command::Send:
        steps = sendSteps(request);
        if (request.isPrinting)
            appendPrint(steps, request, QString());
        break;
    case Request::Command::Print:
        appendPrint(steps, request, request.remoteName);
        break;
    case Request::Command::Pause:
        return {commandStep(pauseCommand(request.token))};
    case Request::Command::Stop:
        return {commandStep(stopCommand(request.token))};
    case Request::Command::Version:
        return {commandStep(versionCommand())};
    case Request::Command::Cancel:
        return {commandStep(cancelCommand())};
    case Request::Command::Status:
        return {
            followStep(request.isWatching ? FollowStep::Mode::UntilIdle : FollowStep::Mode::Once,
                       request.token)};
    case Request::Command::Set:
        steps.emplace_back([parameters = request.parameters,
                            token = request.token](PrinterLink &link, JobNotes &) {
            return std::make_unique<SetStep>(link, parameters, token);
        });
        break;
    case Request::Command::PrintersList:
    case Request::Command::PrintersAdd:
    case Request::Command::PrintersRemove:
        break; // no printer is asked
    }
    return steps;
}
