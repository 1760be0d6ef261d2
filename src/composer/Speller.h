// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "composer/SpellDictionaries.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace velmora {

// Knows whether a word is spelt right in any of the user's languages, what it could have been,
// and the words the user added. Loading reads whole dictionaries (a fraction of a second each),
// so it is done off the main thread; afterwards a speller is used on one thread at a time.
// Verdicts are remembered, so a word is looked up in the dictionaries only once.
class Speller {
public:
    // Loads the dictionaries, then the personal word list (a missing list is an empty one).
    Speller(const QList<DictionaryFile>& dictionaries, const QString& personalWordList);
    ~Speller();
    Speller(const Speller&) = delete;
    Speller& operator=(const Speller&) = delete;

    // A speller for the languages with the installed dictionaries, or null when none is
    // installed for any of them, which is said in the log.
    static std::shared_ptr<Speller> load(const QStringList& languages, const QStringList& folders,
                                         const QString& personalWordList);

    bool isCorrect(const QString& word);
    // The verdict already known for the word, without asking a dictionary.
    std::optional<bool> knownVerdict(const QString& word) const;
    // Replacements for a misspelt word, the first language's first, without repeats.
    QStringList suggestions(const QString& word) const;
    // Accepts the word from now on and appends it to the personal word list; false when the list
    // could not be written (the word is still accepted until the program ends).
    bool addToDictionary(const QString& word);

private:
    struct Dictionary;
    void accept(const QString& word);

    std::vector<std::unique_ptr<Dictionary>> m_dictionaries;
    QString m_personalWordList;
    QHash<QString, bool> m_verdicts;
};

} // namespace velmora
