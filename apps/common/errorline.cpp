// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The one line on standard error with which a program says what went wrong.

#include "errorline.h"

#include <algorithm>
#include <cstdio>

namespace zyapp
{

QString onOneLine(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar character) { return !character.isPrint(); },
        QLatin1Char('?'));
    return text;
}

QString errorLine(const QString &program, const QString &what, const QString &value,
                  const QString &remedy)
{
    QString line = program + QStringLiteral(": ") + what;
    if (!value.isEmpty())
        line += QStringLiteral(": ") + value;
    if (!remedy.isEmpty())
        line += QStringLiteral("; ") + remedy;
    return onOneLine(line);
}

void printError(const QString &program, const QString &what, const QString &value,
                const QString &remedy)
{
    std::fprintf(stderr, "%s\n", qPrintable(errorLine(program, what, value, remedy)));
}

} // namespace zyapp
