// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/Speller.h"

#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <hunspell/hunspell.hxx>

namespace velmora {

// One loaded dictionary and how its words are encoded: UTF-8 in every current dictionary,
// ISO 8859-1 in some old ones.
struct Speller::Dictionary {
    std::unique_ptr<Hunspell> hunspell;
    bool latin1 = false;

    // The word in the dictionary's encoding; nothing when the encoding cannot hold it.
    std::optional<std::string> encode(const QString& word) const {
        if (!latin1)
            return word.toStdString();
        for (const QChar c : word)
            if (c.unicode() > 0xFF)
                return std::nullopt;
        return word.toLatin1().toStdString();
    }
    QString decode(const std::string& text) const {
        return latin1 ? QString::fromLatin1(text.data(), qsizetype(text.size()))
                      : QString::fromStdString(text);
    }
};

Speller::Speller(const QList<DictionaryFile>& dictionaries, const QString& personalWordList)
    : m_personalWordList(personalWordList) {
    for (const DictionaryFile& file : dictionaries) {
        auto dictionary = std::make_unique<Dictionary>();
        dictionary->hunspell =
            std::make_unique<Hunspell>(QFile::encodeName(file.affixPath).constData(),
                                       QFile::encodeName(file.wordsPath).constData());
        const QString encoding =
            QString::fromStdString(dictionary->hunspell->get_dict_encoding()).toUpper();
        if (encoding == u"ISO8859-1" || encoding == u"ISO-8859-1")
            dictionary->latin1 = true;
        else if (encoding != u"UTF-8") {
            Log::write(u"Spell checking: dictionary %@ left out, its encoding %@ is not supported",
                       {file.name, encoding});
            continue;
        }
        m_dictionaries.push_back(std::move(dictionary));
    }
    QFile list(m_personalWordList);
    if (m_personalWordList.isEmpty() || !list.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    for (const QString& line : QString::fromUtf8(list.readAll()).split(u'\n')) {
        const QString word = line.trimmed();
        if (!word.isEmpty())
            accept(word);
    }
}

Speller::~Speller() = default;

std::shared_ptr<Speller> Speller::load(const QStringList& languages, const QStringList& folders,
                                       const QString& personalWordList) {
    const QList<DictionaryFile> chosen =
        dictionariesForLanguages(languages, installedDictionaries(folders));
    if (!chosen.isEmpty()) {
        auto speller = std::make_shared<Speller>(chosen, personalWordList);
        if (!speller->m_dictionaries.empty())
            return speller;
    }
    Log::write(u"Spell checking off: no Hunspell dictionary for %@ in %@",
               {languages.join(QStringLiteral(", ")), folders.join(u':')});
    return nullptr;
}

bool Speller::isCorrect(const QString& word) {
    if (const std::optional<bool> known = knownVerdict(word))
        return *known;
    bool correct = false;
    for (const auto& dictionary : m_dictionaries) {
        const std::optional<std::string> encoded = dictionary->encode(word);
        if (encoded && dictionary->hunspell->spell(*encoded)) {
            correct = true;
            break;
        }
    }
    m_verdicts.insert(word, correct);
    return correct;
}

std::optional<bool> Speller::knownVerdict(const QString& word) const {
    const auto found = m_verdicts.constFind(word);
    if (found == m_verdicts.cend())
        return std::nullopt;
    return *found;
}

QStringList Speller::suggestions(const QString& word) const {
    QStringList out;
    for (const auto& dictionary : m_dictionaries) {
        const std::optional<std::string> encoded = dictionary->encode(word);
        if (!encoded)
            continue;
        for (const std::string& suggestion : dictionary->hunspell->suggest(*encoded)) {
            const QString text = dictionary->decode(suggestion);
            if (!out.contains(text))
                out.append(text);
        }
    }
    return out;
}

bool Speller::addToDictionary(const QString& word) {
    const QString trimmed = word.trimmed();
    if (trimmed.isEmpty() || trimmed.contains(u'\n'))
        return false;
    accept(trimmed);
    if (m_personalWordList.isEmpty())
        return false;
    QDir().mkpath(QFileInfo(m_personalWordList).absolutePath());
    QFile list(m_personalWordList);
    if (!list.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text) ||
        list.write((trimmed + u'\n').toUtf8()) < 0) {
        Log::write(u"Spell checking: could not add a word to %@: %@",
                   {m_personalWordList, list.errorString()});
        return false;
    }
    return true;
}

void Speller::accept(const QString& word) {
    // Hunspell takes the word as it is and its capitalised forms, so "velmora" also lets
    // "Velmora" through at the start of a sentence.
    for (const auto& dictionary : m_dictionaries)
        if (const std::optional<std::string> encoded = dictionary->encode(word))
            dictionary->hunspell->add(*encoded);
    // Verdicts of other words may change with the word's forms; they are cheap to find again.
    m_verdicts.clear();
}

} // namespace velmora
