// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The one line on standard error with which a program says what went wrong.

#include "errorline.h"

#include <cstdio>

namespace zyapp
{

QString onOneLine(const QString &text)
{
    QString line;
    for (int i = 0; i < text.size(); ++i) {
        const bool isPair
            = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const uint character
            = isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        if (!QChar::isPrint(character))
            line += QLatin1Char('?');
        else
            line += text.mid(i, isPair ? 2 : 1);
        i += isPair ? 1 : 0;
    }
    return line;
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
    std::fprintf(stderr, "%s\n", errorLine(program, what, value, remedy).toUtf8().constData());
}

} // namespace zyapp
