// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter and zymodel, run to their ends.

#ifndef PROGRAMS_H
#define PROGRAMS_H

#include "childprocess.h"

namespace zytest
{

RunResult runPrinter(const QStringList &arguments);
RunResult runModel(const QStringList &arguments);

/// Writes a valid sliced model of @p layers small layers to @p path; ends the test program when
/// that fails. Returns @p path.
QString makeModel(const QString &path, int layers = 20);

} // namespace zytest

using zytest::makeModel;
using zytest::runModel;
using zytest::runPrinter;
using zytest::RunResult;

#endif // PROGRAMS_H
