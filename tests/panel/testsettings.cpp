// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Settings and language of the test's own.

#include "testsettings.h"

#include "translations.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTranslator>

TestSettings::TestSettings()
{
    qunsetenv("ZYSLICER_SETTINGS");
    for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, m_directory.path());
    QCoreApplication::setOrganizationName(QStringLiteral("zyWebsocket"));
    QCoreApplication::setApplicationName(QStringLiteral("zypanel"));
}

InstalledLanguage::InstalledLanguage(QLocale::Language language)
{
    QLocale::setDefault(QLocale(language));
    zypanel::installTranslations(*QCoreApplication::instance(), QLocale(language));
}

InstalledLanguage::~InstalledLanguage()
{
    QLocale::setDefault(QLocale::system());
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>());
}
