// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel in the user's language.

#include "translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace zypanel
{

namespace
{

void install(QCoreApplication &application, const QLocale &locale, const QString &name,
             const QString &folder)
{
    auto *translator = new QTranslator(&application);
    if (translator->load(locale, name, QStringLiteral("_"), folder))
        application.installTranslator(translator);
    else
        delete translator;
}

} // namespace

void installTranslations(QCoreApplication &application, const QLocale &locale)
{
#if QT_VERSION_MAJOR >= 6
    const QString qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    const QString qtFolder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
    install(application, locale, QStringLiteral("qtbase"), qtFolder);
    install(application, locale, QStringLiteral("zypanel"), QStringLiteral(":/zypanel/i18n"));
}

} // namespace zypanel
