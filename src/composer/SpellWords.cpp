// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/SpellWords.h"

#include "message/LinkDetector.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace velmora {

namespace {

struct Span {
    qsizetype start;
    qsizetype end;
};

bool looksLikeAddressOrUrl(QStringView chunk) {
    return chunk.contains(u"://") || chunk.contains(u'@') ||
           chunk.startsWith(u"www.", Qt::CaseInsensitive);
}

// The parts of the text no word may touch: the links the detector finds, and every run between
// spaces that looks like an address or a URL the detector did not take (a "file://" path, a
// handle such as "@team").
QList<Span> excludedSpans(QStringView text) {
    QList<Span> spans;
    for (const DetectedLink& link : detectLinks(text))
        spans.append({link.start, link.start + link.length});
    qsizetype at = 0;
    const qsizetype size = text.size();
    while (at < size) {
        while (at < size && text[at].isSpace())
            ++at;
        const qsizetype start = at;
        while (at < size && !text[at].isSpace())
            ++at;
        if (at > start && looksLikeAddressOrUrl(text.sliced(start, at - start)))
            spans.append({start, at});
    }
    std::sort(spans.begin(), spans.end(),
              [](const Span& a, const Span& b) { return a.start < b.start; });
    return spans;
}

bool worthChecking(QStringView word) {
    if (word.size() < 2)
        return false;
    bool hasLetter = false;
    bool hasLower = false;
    for (const QChar c : word) {
        if (c.isDigit() || c == u'_')
            return false;
        if (c.isLetter()) {
            hasLetter = true;
            hasLower = hasLower || !c.isUpper();
        }
    }
    return hasLetter && hasLower;
}

} // namespace

QList<WordRange> wordsToCheck(QStringView text) {
    QList<WordRange> words;
    if (text.isEmpty())
        return words;
    const QList<Span> excluded = excludedSpans(text);
    qsizetype nextExcluded = 0;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text.data(), text.size());
    qsizetype start = (finder.boundaryReasons() & QTextBoundaryFinder::StartOfItem) ? 0 : -1;
    for (qsizetype at = finder.toNextBoundary(); at >= 0; at = finder.toNextBoundary()) {
        const auto reasons = finder.boundaryReasons();
        if ((reasons & QTextBoundaryFinder::EndOfItem) && start >= 0) {
            // The spans are sorted and words come in order, so one pass over both will do.
            while (nextExcluded < excluded.size() && excluded[nextExcluded].end <= start)
                ++nextExcluded;
            const bool inside = nextExcluded < excluded.size() && excluded[nextExcluded].start < at;
            const QStringView word = text.sliced(start, at - start);
            if (!inside && worthChecking(word))
                words.append({start, at - start});
        }
        start = (reasons & QTextBoundaryFinder::StartOfItem) ? at : -1;
    }
    return words;
}

} // namespace velmora
