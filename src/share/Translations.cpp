// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "share/Translations.h"

#include "platform/Log.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace velmora {
namespace {

// The object name of the translator this program installs; the application object owns it.
constexpr auto kTranslatorName = "velmora-share translator";

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

} // namespace

bool installTranslationsFor(const QStringList& languages) {
    auto* app = QCoreApplication::instance();
    if (app == nullptr) {
        qCWarning(lcCore, "installTranslations: no application object yet");
        return false;
    }
    if (auto* earlier = app->findChild<QTranslator*>(QString::fromLatin1(kTranslatorName),
                                                     Qt::FindDirectChildrenOnly)) {
        QCoreApplication::removeTranslator(earlier);
        delete earlier;
    }

    const QStringList folders = translationFolders();
    auto translator = std::make_unique<QTranslator>();
    for (QString language : languages) {
        // "it-IT" names the file "velmora-share_it_IT"; QTranslator falls back from it to
        // "velmora-share_it" by itself.
        language.replace(u'-', u'_');
        if (isEnglish(language))
            return false;
        for (const QString& folder : folders) {
            if (translator->load(QStringLiteral("velmora-share_") + language, folder)) {
                translator->setObjectName(QString::fromLatin1(kTranslatorName));
                translator->setParent(app);
                QCoreApplication::installTranslator(translator.release());
                return true;
            }
        }
    }
    return false;
}

void installTranslations() {
    installTranslationsFor(QLocale().uiLanguages());
}

} // namespace velmora
