// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// main() of a folder's tests that show windows.

#include "testprogram.h"

#include <QApplication>

int main(int argc, char **argv)
{
#if QT_VERSION_MAJOR < 6 // which always does both
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
    const QApplication application(argc, argv);
    return zytest::runTests(argc, argv);
}
