// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zyprinter and zymodel, run to their ends.

#include "programs.h"

namespace zytest
{

RunResult runPrinter(const QStringList &arguments)
{
    return runProgram(QStringLiteral(ZYPRINTER), arguments);
}

RunResult runModel(const QStringList &arguments)
{
    return runProgram(QStringLiteral(ZYMODEL), arguments);
}

QString makeModel(const QString &path, int layers)
{
    const QStringList arguments{QStringLiteral("--out"),        path,
                                QStringLiteral("--layers"),     QString::number(layers),
                                QStringLiteral("--resolution"), QStringLiteral("144x256")};
    if (runModel(arguments).exitCode != 0)
        qFatal("no model %s", qPrintable(path));
    return path;
}

} // namespace zytest
