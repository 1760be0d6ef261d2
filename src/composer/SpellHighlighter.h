// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "composer/SpellWords.h"

#include <QColor>
#include <QElapsedTimer>
#include <QPalette>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace velmora {

class Speller;

// Underlines the misspelt words of a document with the style's spell-check wave, as the user
// types. It never holds up typing: each turn of the event loop checks words for a few
// milliseconds at most, and whatever is left (a long text just pasted or shared, the whole
// document after a word was added) is checked in later turns, the blocks on screen first.
// Until a block is checked, its new words are simply not underlined.
class SpellHighlighter : public QSyntaxHighlighter {
    Q_OBJECT
public:
    explicit SpellHighlighter(QTextDocument* document);
    ~SpellHighlighter() override;

    // Null turns checking off. Everything is checked again with the new speller.
    void setSpeller(std::shared_ptr<Speller> speller);
    const std::shared_ptr<Speller>& speller() const { return m_speller; }

    // The colour of the wave; everything is drawn again in it.
    void setUnderlineColor(const QColor& color);
    QColor underlineColor() const { return m_format.underlineColor(); }

    // Gives the numbers of the first and last blocks on screen, checked before the others.
    void setVisibleBlocks(std::function<std::pair<int, int>()> visibleBlocks);

    // Gives the caret's position in the document. A misspelt word that ends at the caret when
    // it is typed is not underlined until the caret moves away (call caretMoved then).
    void setCaret(std::function<int()> caret);
    void caretMoved();

    // Checks every block again, in slices as after a large change (after the speller learnt a
    // word, say).
    void recheckAll();

    // The misspelt word at a position of the document (the position may be just after it), in
    // document positions; checked at once if it was not yet.
    std::optional<WordRange> misspeltWordAt(int position);

    // Whether blocks are still waiting to be checked.
    bool isChecking() const { return m_slicer.isActive(); }

protected:
    void highlightBlock(const QString& text) override;

private:
    void startTurn();
    bool turnOver() const;
    void markStale(int blockNumber);
    bool isStale(const QTextBlock& block) const;
    void checkSlice();
    // The misspelt words of a block's text; *complete is false when the turn ran out first.
    QList<WordRange> misspellings(const QString& text, bool* complete);
    // Checks a block outside the highlighter's own pass; false when only in part.
    bool checkStaleBlock(QTextBlock block);
    // Tells the document's layout about the blocks whose wave changed in this slice.
    void layOutChangedBlocks();

    std::shared_ptr<Speller> m_speller;
    QTextCharFormat m_format;
    std::function<std::pair<int, int>()> m_visibleBlocks;
    std::function<int()> m_caret;
    // The caret's place when its block was last edited: a word ending there is being typed and
    // is left alone; -1: none.
    int m_heldBack = -1;
    // What a block was last checked with; a block checked with an older one is checked again.
    int m_generation = 0;
    // Each turn of the event loop has a budget, counted from the first block it checks; the
    // zero timer that ends the turn also checks the blocks left over.
    QElapsedTimer m_turn;
    bool m_turnStarted = false;
    bool m_turnHasBlock = false;
    QTimer m_slicer;
    int m_resumeBlock = 0;
    // The part of the document whose wave changed in this slice.
    int m_dirtyFrom = -1;
    int m_dirtyTo = -1;
    // What laying out a character again costs, learnt as slices go; the first guess is on the
    // safe side.
    double m_layoutMsPerChar = 0.002;
};

} // namespace velmora

namespace velmora {

// The colour of the misspelling wave in a palette: a red as dark as the palette's text on a
// light field and as light as it on a dark one, so it reads on either.
QColor misspellingColor(const QPalette& palette);

} // namespace velmora
