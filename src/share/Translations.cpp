#include "share/Translations.h"

#include "platform/Log.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

#include <memory>

namespace velmora {
namespace {

// The translator installed last; the application object owns it.
QPointer<QTranslator> installed;

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
    if (installed) {
        QCoreApplication::removeTranslator(installed);
        delete installed;
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
                translator->setParent(app);
                installed = translator.release();
                QCoreApplication::installTranslator(installed);
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
