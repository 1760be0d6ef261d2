// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/SpellHighlighter.h"

#include "composer/Speller.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace velmora {

namespace {

// How long one turn of the event loop may spend checking: well inside a frame, so typing and
// scrolling stay smooth while a long text is checked.
constexpr qint64 kTurnBudgetMs = 5;

// What a block was last checked with, and whether every word of it was.
struct CheckedBlock : QTextBlockUserData {
    int generation = 0;
    bool complete = false;
};

} // namespace

SpellHighlighter::SpellHighlighter(QTextDocument* document)
    : QSyntaxHighlighter(document) {
    m_format.setUnderlineStyle(QTextCharFormat::SpellCheckUnderline);
    m_slicer.setSingleShot(true);
    m_slicer.setInterval(0);
    connect(&m_slicer, &QTimer::timeout, this, &SpellHighlighter::checkSlice);
}

SpellHighlighter::~SpellHighlighter() = default;

void SpellHighlighter::setSpeller(std::shared_ptr<Speller> speller) {
    if (speller == m_speller)
        return;
    m_speller = std::move(speller);
    recheckAll();
}

void SpellHighlighter::setUnderlineColor(const QColor& color) {
    if (color == m_format.underlineColor())
        return;
    m_format.setUnderlineColor(color);
    recheckAll();
}

void SpellHighlighter::setVisibleBlocks(std::function<std::pair<int, int>()> visibleBlocks) {
    m_visibleBlocks = std::move(visibleBlocks);
}

void SpellHighlighter::setCaret(std::function<int()> caret) {
    m_caret = std::move(caret);
}

void SpellHighlighter::caretMoved() {
    if (m_heldBack < 0 || !document() || (m_caret && m_caret() == m_heldBack))
        return;
    // The word left alone while it was typed is checked in the next turn.
    const QTextBlock block = document()->findBlock(m_heldBack);
    m_heldBack = -1;
    if (!block.isValid())
        return;
    if (auto* checked = dynamic_cast<CheckedBlock*>(block.userData()))
        checked->complete = false;
    markStale(block.blockNumber());
}

void SpellHighlighter::recheckAll() {
    ++m_generation;
    m_resumeBlock = 0;
    m_slicer.start();
}

std::optional<WordRange> SpellHighlighter::misspeltWordAt(int position) {
    if (!m_speller || !document())
        return std::nullopt;
    const QTextBlock block = document()->findBlock(position);
    if (!block.isValid())
        return std::nullopt;
    const QString text = block.text();
    const qsizetype at = position - block.position();
    for (const WordRange& word : wordsToCheck(text)) {
        if (at < word.start || at > word.start + word.length)
            continue;
        if (m_speller->isCorrect(text.sliced(word.start, word.length)))
            return std::nullopt;
        return WordRange{block.position() + word.start, word.length};
    }
    return std::nullopt;
}

QList<WordRange> SpellHighlighter::misspellings(const QString& text, bool* complete) {
    QList<WordRange> misspelt;
    *complete = true;
    bool checkedOne = false;
    for (const WordRange& range : wordsToCheck(text)) {
        const QString word = text.sliced(range.start, range.length);
        std::optional<bool> correct = m_speller->knownVerdict(word);
        if (!correct) {
            // At least one new word per call, so that every turn gets on.
            if (checkedOne && turnOver()) {
                *complete = false;
                continue;
            }
            correct = m_speller->isCorrect(word);
            checkedOne = true;
        }
        if (!*correct)
            misspelt.append(range);
    }
    return misspelt;
}

void SpellHighlighter::highlightBlock(const QString& text) {
    startTurn();
    const bool firstOfTurn = !m_turnHasBlock;
    m_turnHasBlock = true;
    // A word that ends at the caret while its block is edited is still being typed: it is left
    // alone until the caret leaves it, so that a half-typed word does not flash.
    const int blockStart = currentBlock().position();
    const int caret = m_caret ? m_caret() : -1;
    if (caret >= blockStart && caret < blockStart + currentBlock().length())
        m_heldBack = caret;
    auto checked = std::make_unique<CheckedBlock>();
    checked->generation = m_generation;
    checked->complete = true;
    // Past the budget, a block is only marked for a later turn; the first block of a turn is
    // always looked at (it is the one being typed in).
    if (m_speller && !firstOfTurn && turnOver()) {
        checked->complete = false;
    } else if (m_speller) {
        for (const WordRange& range : misspellings(text, &checked->complete))
            if (blockStart + range.start + range.length != m_heldBack)
                setFormat(int(range.start), int(range.length), m_format);
    }
    const bool complete = checked->complete;
    setCurrentBlockUserData(checked.release());
    if (!complete)
        markStale(currentBlock().blockNumber());
}

bool SpellHighlighter::checkStaleBlock(QTextBlock block) {
    auto checked = std::make_unique<CheckedBlock>();
    checked->generation = m_generation;
    checked->complete = true;
    QList<QTextLayout::FormatRange> formats;
    if (m_speller) {
        for (const WordRange& range : misspellings(block.text(), &checked->complete))
            if (block.position() + range.start + range.length != m_heldBack)
                formats.append({int(range.start), int(range.length), m_format});
    }
    const bool complete = checked->complete;
    block.setUserData(checked.release());
    // The wave is set on the block's layout directly, as the highlighter would, but only where
    // it changes: telling the document's layout about each block one by one costs a walk over
    // the whole document every time.
    if (formats != block.layout()->formats()) {
        block.layout()->setFormats(formats);
        const int end = block.position() + block.length();
        m_dirtyFrom = m_dirtyFrom < 0 ? block.position() : std::min(m_dirtyFrom, block.position());
        m_dirtyTo = std::max(m_dirtyTo, end);
    }
    return complete;
}

void SpellHighlighter::startTurn() {
    if (m_turnStarted)
        return;
    m_turnStarted = true;
    m_turnHasBlock = false;
    m_turn.start();
    // The zero timer fires once this turn of the event loop is done, and ends the turn.
    if (!m_slicer.isActive())
        m_slicer.start();
}

bool SpellHighlighter::turnOver() const {
    // Blocks whose wave changed are laid out again at the end of the slice; that is counted in.
    const double layoutMs = m_dirtyFrom < 0 ? 0.0 : (m_dirtyTo - m_dirtyFrom) * m_layoutMsPerChar;
    return m_turn.nsecsElapsed() / 1e6 + layoutMs >= double(kTurnBudgetMs);
}

void SpellHighlighter::layOutChangedBlocks() {
    if (m_dirtyFrom < 0)
        return;
    const int chars = m_dirtyTo - m_dirtyFrom;
    QElapsedTimer took;
    took.start();
    document()->markContentsDirty(m_dirtyFrom, chars);
    m_dirtyFrom = -1;
    m_dirtyTo = -1;
    // Learns what laying out costs here, for the next slices' budgets.
    if (chars >= 1000)
        m_layoutMsPerChar = 0.7 * m_layoutMsPerChar + 0.3 * (took.nsecsElapsed() / 1e6 / chars);
}

void SpellHighlighter::markStale(int blockNumber) {
    m_resumeBlock = std::min(m_resumeBlock, blockNumber);
    if (!m_slicer.isActive())
        m_slicer.start();
}

bool SpellHighlighter::isStale(const QTextBlock& block) const {
    const auto* checked = dynamic_cast<const CheckedBlock*>(block.userData());
    return !checked || !checked->complete || checked->generation != m_generation;
}

void SpellHighlighter::checkSlice() {
    m_turnStarted = false;
    QTextDocument* const doc = document();
    if (!doc)
        return;
    if (m_resumeBlock >= doc->blockCount()) {
        // Nothing waits: the turn only had its own block to check, which it did.
        m_slicer.stop();
        return;
    }
    startTurn();
    if (m_visibleBlocks) {
        const auto [first, last] = m_visibleBlocks();
        for (QTextBlock block = doc->findBlockByNumber(first);
             block.isValid() && block.blockNumber() <= last && !turnOver(); block = block.next())
            if (isStale(block) && !checkStaleBlock(block))
                markStale(block.blockNumber());
        layOutChangedBlocks();
    }
    QTextBlock block = doc->findBlockByNumber(m_resumeBlock);
    while (block.isValid() && !turnOver()) {
        if (isStale(block) && !checkStaleBlock(block))
            break; // checked in part: the rest of it next turn
        block = block.next();
    }
    // One change for the document's layout, however many blocks got a new wave.
    layOutChangedBlocks();
    m_turnStarted = false;
    if (block.isValid()) {
        m_resumeBlock = block.blockNumber();
        m_slicer.start();
    } else {
        m_resumeBlock = doc->blockCount();
        m_slicer.stop();
    }
}

} // namespace velmora

namespace velmora {

QColor misspellingColor(const QPalette& palette) {
    const float textLightness = palette.color(QPalette::Text).lightnessF();
    return QColor::fromHslF(0.0f, 0.85f, 0.35f + 0.3f * textLightness);
}

} // namespace velmora
