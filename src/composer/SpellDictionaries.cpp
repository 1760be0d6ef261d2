// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/SpellDictionaries.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

namespace velmora {

namespace {

// A language tag or a dictionary name taken apart: "en-Latn-US", "en_US.UTF-8" and
// "en_US_frami" all give "en" and "US".
struct LanguageRegion {
    QString language;
    QString region;
};

LanguageRegion parseTag(QStringView tag) {
    // The encoding and modifier of a POSIX locale name say nothing about the language.
    for (const char16_t stop : {u'.', u'@'}) {
        const qsizetype at = tag.indexOf(QChar(stop));
        if (at >= 0)
            tag = tag.first(at);
    }
    LanguageRegion out;
    bool first = true;
    for (const QStringView piece : tag.tokenize(u'-', Qt::SkipEmptyParts)) {
        for (const QStringView part : piece.tokenize(u'_', Qt::SkipEmptyParts)) {
            if (first) {
                out.language = part.toString().toLower();
                first = false;
                continue;
            }
            const bool isRegion = part.size() == 2 || (part.size() == 3 && part.front().isDigit());
            if (isRegion)
                out.region = part.toString().toUpper();
            // A script ("Latn") may stand before the region; anything else ends the tag.
            if (isRegion || part.size() != 4)
                return out;
        }
    }
    return out;
}

} // namespace

QStringList dictionaryFolders() {
    QStringList folders;
    for (const QString& folder : qEnvironmentVariable("DICPATH").split(u':', Qt::SkipEmptyParts))
        folders.append(folder);
    for (const QString& data :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        folders.append(data + QStringLiteral("/hunspell"));
    folders.removeDuplicates();
    return folders;
}

QList<DictionaryFile> installedDictionaries(const QStringList& folders) {
    QList<DictionaryFile> found;
    QSet<QString> names;
    for (const QString& folder : folders) {
        const QDir dir(folder);
        const QStringList words = dir.entryList({QStringLiteral("*.dic")}, QDir::Files);
        for (const QString& file : words) {
            const QString name = QFileInfo(file).completeBaseName();
            const QString affix = dir.filePath(name + QStringLiteral(".aff"));
            if (names.contains(name) || !QFileInfo(affix).isFile())
                continue;
            names.insert(name);
            found.append({name, affix, dir.filePath(file)});
        }
    }
    std::sort(found.begin(), found.end(),
              [](const DictionaryFile& a, const DictionaryFile& b) { return a.name < b.name; });
    return found;
}

QList<DictionaryFile> dictionariesForLanguages(const QStringList& languages,
                                               const QList<DictionaryFile>& installed) {
    QList<DictionaryFile> chosen;
    QSet<QString> chosenLanguages;
    for (const QString& tag : languages) {
        const LanguageRegion wanted = parseTag(tag);
        if (wanted.language.isEmpty() || wanted.language == u"c" || wanted.language == u"posix" ||
            chosenLanguages.contains(wanted.language))
            continue;
        // The language's usual region, as the locale database has it: US for en, IT for it.
        const QString usualRegion = parseTag(QLocale(wanted.language).name()).region;
        // The list is sorted by name, so "en_US" comes before a variant such as "en_US_frami".
        const DictionaryFile* exact = nullptr;
        const DictionaryFile* usual = nullptr;
        const DictionaryFile* any = nullptr;
        for (const DictionaryFile& dictionary : installed) {
            const LanguageRegion has = parseTag(dictionary.name);
            if (has.language != wanted.language)
                continue;
            if (!exact && !wanted.region.isEmpty() && has.region == wanted.region)
                exact = &dictionary;
            if (!usual && has.region == usualRegion)
                usual = &dictionary;
            if (!any)
                any = &dictionary;
        }
        const DictionaryFile* pick = exact ? exact : usual ? usual : any;
        if (!pick)
            continue;
        chosenLanguages.insert(wanted.language);
        chosen.append(*pick);
    }
    return chosen;
}

QString personalWordListPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/velmora-share/words.dic");
}

} // namespace velmora
