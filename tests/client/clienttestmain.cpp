// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// main() of the client's tests, some of which look at the client after each event.

#include "testprogram.h"
#include "watchfulapplication.h"

int main(int argc, char **argv)
{
    const zytest::WatchfulApplication application(argc, argv);
    return zytest::runTests(argc, argv);
}
