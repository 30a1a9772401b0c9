// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One program for all tests of a folder: fewer links, and each test still runs by itself.

#include "testprogram.h"

#include <QFileInfo>
#include <QMap>
#include <QTest>

#include <cstdio>

namespace zytest
{

namespace
{

QMap<QString, Registration::Maker> &registered()
{
    static QMap<QString, Registration::Maker> makers;
    return makers;
}

} // namespace

Registration::Registration(const char *sourceFile, Maker maker)
{
    registered().insert(QFileInfo(QString::fromUtf8(sourceFile)).completeBaseName(), maker);
}

int runTests(int argc, char **argv)
{
    const QString name = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (registered().contains(name)) {
        argv[1] = argv[0];
        return QTest::qExec(registered().value(name)().get(), argc - 1, argv + 1);
    }
    if (!name.isEmpty()) {
        std::fprintf(stderr, "no such test: %s; there are\n", argv[1]);
        for (auto it = registered().cbegin(); it != registered().cend(); ++it)
            std::fprintf(stderr, "  %s\n", qPrintable(it.key()));
        return 2;
    }
    int failures = 0;
    for (const Registration::Maker maker : qAsConst(registered()))
        failures += QTest::qExec(maker().get(), argc, argv);
    return failures;
}

} // namespace zytest
