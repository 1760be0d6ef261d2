// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QStringView>

namespace velmora {

// Where one word lies in a text, in UTF-16 units.
struct WordRange {
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const WordRange&) const = default;
};

// The words of a text that are worth handing to a speller, in text order. Words are found at
// Unicode word boundaries ("don't" is one word, "e-mail" two). Left out: links and mail
// addresses, anything between spaces that holds "://", "@" or starts with "www.", words with a
// digit or an underscore ("mp3", "snake_case"), single letters, and words written all in
// capitals (acronyms).
QList<WordRange> wordsToCheck(QStringView text);

} // namespace velmora
