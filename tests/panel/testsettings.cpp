// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Settings of the test's own, in a temporary directory.

#include "testsettings.h"

#include <QCoreApplication>
#include <QSettings>

TestSettings::TestSettings()
{
    for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, m_directory.path());
    QCoreApplication::setOrganizationName(QStringLiteral("zyWebsocket"));
    QCoreApplication::setApplicationName(QStringLiteral("zypanel"));
}
