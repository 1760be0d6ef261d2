// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace velmora {

// One installed Hunspell dictionary: its name ("en_US", "de_DE_frami") and its two files.
struct DictionaryFile {
    QString name;
    QString affixPath;
    QString wordsPath;
    bool operator==(const DictionaryFile&) const = default;
};

// The folders Hunspell dictionaries are looked for in, first wins: each folder of $DICPATH
// (colon-separated), then "hunspell" in $XDG_DATA_HOME and in each of $XDG_DATA_DIRS (by
// default /usr/local/share and /usr/share, where Debian installs them).
QStringList dictionaryFolders();

// The dictionaries in those folders: every NAME.dic with a NAME.aff beside it, sorted by name.
// A name found in an earlier folder hides the same name further on.
QList<DictionaryFile> installedDictionaries(const QStringList& folders);

// The dictionaries for a user's languages, most preferred first, at most one per language. A
// language is a tag as QLocale::uiLanguages() gives it ("it", "en-Latn-US", "pt_BR"): its own
// region's dictionary when installed, else the language's usual one (en_US for "en", it_IT for
// "it"), else the first installed of that language. "C" and "POSIX" name no language.
QList<DictionaryFile> dictionariesForLanguages(const QStringList& languages,
                                               const QList<DictionaryFile>& installed);

// The personal word list: words the user added, one per line, in
// $XDG_CONFIG_HOME/velmora-share/words.dic.
QString personalWordListPath();

} // namespace velmora
