// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// One program for all tests of a folder: fewer links, and each test still runs by itself.

#ifndef TESTPROGRAM_H
#define TESTPROGRAM_H

#include <QObject>

#include <memory>

namespace zytest
{

/// Makes a test known to the program's main(), under the name of its source file.
class Registration
{
public:
    using Maker = std::unique_ptr<QObject> (*)();

    Registration(const char *sourceFile, Maker maker);
};

/// Runs the test named by the first argument, with the further ones for Qt Test; all of them, in
/// alphabetical order, without. The exit code is the number of failed functions.
int runTests(int argc, char **argv);

} // namespace zytest

/// Instead of QTEST_MAIN(): the program's main() stands in testmain.cpp or guitestmain.cpp. The
/// name of the class has to be the only one in the program.
#define ZY_TEST(Class)                                                                             \
    static const zytest::Registration registration##Class(                                         \
        __FILE__, []() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); });

#endif // TESTPROGRAM_H
