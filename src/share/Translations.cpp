// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/Translations.h"

#include "platform/Log.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace velmora {
namespace {

// The object names of the translators this program installs, its own and Qt's (for the texts
// of Qt's widgets and command-line parser: a text field's menu, "Unknown option"); the
// application object owns them.
constexpr auto kTranslatorName = "velmora-share translator";
constexpr auto kQtTranslatorName = "velmora-share Qt translator";

QStringList translationFolders() {
    // A translation installed beside the program comes first, so that one can be corrected or
    // added without a rebuild; the ones built into the program serve everywhere else, the build
    // tree included.
    const QDir programFolder(QCoreApplication::applicationDirPath());
    return {QDir::cleanPath(programFolder.filePath(QStringLiteral(VELMORA_TRANSLATIONS_FROM_BIN))),
            QStringLiteral(":/i18n")};
}

bool isEnglish(const QString& language) {
    const QString base = language.section(u'_', 0, 0);
    return base.compare(u"en", Qt::CaseInsensitive) == 0;
}

void removeTranslator(QCoreApplication* app, const char* name) {
    if (auto* earlier =
            app->findChild<QTranslator*>(QString::fromLatin1(name), Qt::FindDirectChildrenOnly)) {
        QCoreApplication::removeTranslator(earlier);
        delete earlier;
    }
}

// Loads the first of the languages (underscore forms) that has a catalogue named prefix +
// language in one of the folders, and installs it under the name. English before any of them
// keeps the texts as they are written.
bool install(QCoreApplication* app, const char* name, const QString& prefix,
             const QStringList& languages, const QStringList& folders) {
    removeTranslator(app, name);
    auto translator = std::make_unique<QTranslator>();
    for (const QString& language : languages) {
        if (isEnglish(language))
            return false;
        for (const QString& folder : folders) {
            // QTranslator falls back from "velmora-share_it_IT" to "velmora-share_it" by itself.
            if (translator->load(prefix + language, folder)) {
                translator->setObjectName(QString::fromLatin1(name));
                translator->setParent(app);
                QCoreApplication::installTranslator(translator.release());
                return true;
            }
        }
    }
    return false;
}

} // namespace

bool installTranslationsFor(const QStringList& languages) {
    auto* app = QCoreApplication::instance();
    if (app == nullptr) {
        qCWarning(lcCore, "installTranslations: no application object yet");
        return false;
    }
    QStringList underscored = languages;
    for (QString& language : underscored)
        language.replace(u'-', u'_'); // "it-IT" names the file "velmora-share_it_IT"
    // Qt's catalogue where the system has it (Debian: qt6-translations-l10n); texts stay English
    // without it.
    install(app, kQtTranslatorName, QStringLiteral("qtbase_"), underscored,
            {QLibraryInfo::path(QLibraryInfo::TranslationsPath)});
    return install(app, kTranslatorName, QStringLiteral("velmora-share_"), underscored,
                   translationFolders());
}

void installTranslations() {
    installTranslationsFor(QLocale().uiLanguages());
}

} // namespace velmora
