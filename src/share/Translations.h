// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace velmora {

// Installs the program's translation for the languages of the default locale, QLocale(): the
// system's as Qt reads it at start-up (LANGUAGE, else LC_ALL, LC_MESSAGES, LANG) unless the
// program chose another with QLocale::setDefault before the call. Call it on the main thread once
// the application object exists. Where there is no translation for those languages, the texts
// stay English.
void installTranslations();

// The same for an explicit list of languages, the most wanted first, as QLocale::uiLanguages
// gives them ("it-IT", "it"). The first language with a translation wins; English anywhere
// before it keeps the texts English, as it is the language they are written in. A translation
// this function installed before is removed first. Answers whether a translation is installed.
bool installTranslationsFor(const QStringList& languages);

} // namespace velmora
