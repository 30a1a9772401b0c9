// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Settings of the test's own, in a temporary directory.

#include "testsettings.h"

#include <QCoreApplication>
#include <QSettings>

TestSettings::TestSettings()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
    QCoreApplication::setOrganizationName(QStringLiteral("libzyWebsocket"));
    QCoreApplication::setApplicationName(QStringLiteral("zypanel"));
}
