// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel in the user's language.

#ifndef PANEL_TRANSLATIONS_H
#define PANEL_TRANSLATIONS_H

class QCoreApplication;
class QLocale;

namespace zypanel
{

/// Installs what there is for @p locale, Qt's own texts included; English otherwise.
void installTranslations(QCoreApplication &application, const QLocale &locale);

} // namespace zypanel

#endif // PANEL_TRANSLATIONS_H
