// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Settings and language of the test's own.

#ifndef TESTSETTINGS_H
#define TESTSETTINGS_H

#include <QLocale>
#include <QTemporaryDir>

/// Make it before anything reads the settings.
class TestSettings
{
public:
    TestSettings();

private:
    QTemporaryDir m_directory;
};

/// The panel in another language, as long as this lives.
class InstalledLanguage
{
public:
    explicit InstalledLanguage(QLocale::Language language);
    ~InstalledLanguage();

private:
    Q_DISABLE_COPY(InstalledLanguage)
};

#endif // TESTSETTINGS_H
