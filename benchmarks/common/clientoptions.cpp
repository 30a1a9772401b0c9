// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The senders' command line.

#include "clientoptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace zybench
{

ClientOptions clientOptions(const QCoreApplication &app)
{
    const QCommandLineOption url(QStringLiteral("url"), QStringLiteral("Send to URL."),
                                 QStringLiteral("URL"));
    const QCommandLineOption file(QStringLiteral("file"), QStringLiteral("Send FILE."),
                                  QStringLiteral("FILE"));
    const QCommandLineOption level(QStringLiteral("level"), QStringLiteral("Compress at level N."),
                                   QStringLiteral("N"), QStringLiteral("-1"));
    const QCommandLineOption threads(QStringLiteral("threads"),
                                     QStringLiteral("Compress in N threads."), QStringLiteral("N"),
                                     QStringLiteral("0"));
    const QCommandLineOption sha256(QStringLiteral("sha256"),
                                    QStringLiteral("Send HEX as the file's digest."),
                                    QStringLiteral("HEX"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({url, file, level, threads, sha256});
    parser.process(app);
    if (!parser.isSet(url) || !parser.isSet(file))
        parser.showHelp(2);
    return {QUrl(parser.value(url)), parser.value(file), parser.value(level).toInt(),
            parser.value(threads).toInt(), parser.value(sha256)};
}

} // namespace zybench
