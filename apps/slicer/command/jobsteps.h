// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The steps of the job that a request makes on each printer.

#ifndef JOBSTEPS_H
#define JOBSTEPS_H

#include "job.h"
#include "modelfile.h"

struct Request;

/// The files to send with their names on the printer.
QVector<ModelFile> modelFiles(const Request &request);
std::vector<StepMaker> jobSteps(const Request &request);

#endif // JOBSTEPS_H
