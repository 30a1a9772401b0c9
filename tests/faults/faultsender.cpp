// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A slicer as a process of its own: sends one file, and again after each interruption until done.

#include "eventlines.h"
#include "persistentsender.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdlib>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("url"), QStringLiteral("printer"));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("local file"));
    const auto option = [&parser](const char *name, const char *value) {
        const QCommandLineOption added(QLatin1String(name), {}, QLatin1String(value));
        parser.addOption(added);
        return added;
    };
    const auto attempts = option("attempts", "count");
    const auto stall = option("stall", "ms");
    const auto dropAfter = option("drop-after", "chunks");
    const auto cancelAfter = option("cancel-after", "chunks");
    const auto reuse = option("reuse", "");
    parser.process(application);
    if (parser.positionalArguments().size() != 2)
        parser.showHelp(2);

    PersistentSender::Plan plan;
    plan.url = QUrl(parser.positionalArguments().at(0));
    plan.file = parser.positionalArguments().at(1);
    plan.isClientReused = parser.isSet(reuse);
    const auto number = [&parser](const QCommandLineOption &name, int standard) {
        return parser.isSet(name) ? parser.value(name).toInt() : standard;
    };
    plan.attempts = number(attempts, plan.attempts);
    plan.stall = number(stall, plan.stall);
    plan.dropAfter = number(dropAfter, 0);
    plan.cancelAfter = number(cancelAfter, 0);

    quitWithStandardInput();
    PersistentSender sender(plan);
    return QCoreApplication::exec();
}
