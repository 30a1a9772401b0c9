// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Settings of the test's own, in a temporary directory.

#ifndef TESTSETTINGS_H
#define TESTSETTINGS_H

#include <QTemporaryDir>

/// Make it before anything reads the settings.
class TestSettings
{
public:
    TestSettings();

private:
    QTemporaryDir m_directory;
};

#endif // TESTSETTINGS_H
