// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A zyprinter on a terminal of its own, whose screen the test reads.

#include "terminalprocess.h"

#include "waiting.h"

#include <QRegularExpression>

bool TerminalProcess::start(const QStringList &arguments, const QSize &size,
                            const char *terminalType)
{
    const QStringList directory{QStringLiteral("--dir"), m_dir.path()};
    if (!Terminal::start(QStringLiteral(ZYPRINTER), directory + arguments, size, terminalType))
        return false;
    const QRegularExpression listening(QStringLiteral("zyprinter: listening on (ws:\\S+)\r\n"));
    return zytest::waitUntil([&] {
        m_url = QUrl(listening.match(QString::fromUtf8(output())).captured(1));
        return !m_url.isEmpty();
    });
}

QStringList TerminalProcess::screen()
{
    // A screen is whole once the next one, or the end, has begun.
    const QByteArray home = "\x1b[H";
    const QByteArray end = "\x1b[?25h";
    const auto last = qMax(output().lastIndexOf(home), output().lastIndexOf(end));
    const auto first = last > 0 ? output().lastIndexOf(home, last - 1) : -1;
    if (first < 0)
        return {};
    const auto start = first + home.size();
    QString text = QString::fromUtf8(output().mid(start, last - start));
    text.remove(QStringLiteral("\x1b[K")).remove(QLatin1Char('\r'));
    return text.split(QLatin1Char('\n'));
}

bool TerminalProcess::shows(const QString &text)
{
    return zytest::waitUntil([&] { return screen().filter(text).size() > 0; });
}
