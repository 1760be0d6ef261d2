// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/SpellingMenu.h"

#include "composer/SpellHighlighter.h"
#include "composer/Speller.h"
#include "platform/LocalizedString.h"

#include <QMenu>
#include <QPointer>
#include <QTextEdit>

namespace velmora {

namespace {

// A long list of far-fetched guesses helps nobody; Hunspell gives its best first.
constexpr int kMaxSuggestions = 8;

} // namespace

void addSpellingActions(QMenu& menu, QTextEdit& edit, SpellHighlighter& highlighter, int position) {
    const std::shared_ptr<Speller> speller = highlighter.speller();
    const std::optional<WordRange> range = highlighter.misspeltWordAt(position);
    if (!speller || !range)
        return;
    QTextCursor cursor(edit.document());
    cursor.setPosition(int(range->start));
    cursor.setPosition(int(range->start + range->length), QTextCursor::KeepAnchor);
    const QString word = cursor.selectedText();

    QAction* const first = menu.actions().value(0);
    QList<QAction*> added;
    const QPointer<QTextEdit> field(&edit);
    for (const QString& suggestion : speller->suggestions(word).mid(0, kMaxSuggestions)) {
        auto* action = new QAction(suggestion, &menu);
        QFont font = action->font();
        font.setBold(true);
        action->setFont(font);
        QObject::connect(action, &QAction::triggered, &menu, [field, cursor, word, suggestion] {
            // The text may have changed while the menu was open: replace only the same word.
            QTextCursor replace = cursor;
            if (!field || replace.selectedText() != word)
                return;
            replace.insertText(suggestion);
        });
        added.append(action);
    }
    if (added.isEmpty()) {
        auto* none = new QAction(LocalizedString("No Suggestions"), &menu);
        none->setEnabled(false);
        added.append(none);
    }
    auto* learn = new QAction(LocalizedString("Add to Dictionary"), &menu);
    QPointer<SpellHighlighter> checker(&highlighter);
    QObject::connect(learn, &QAction::triggered, &menu, [speller, checker, word] {
        speller->addToDictionary(word);
        if (checker)
            checker->recheckAll();
    });
    added.append(learn);
    menu.insertActions(first, added);
    if (first)
        menu.insertSeparator(first);
}

} // namespace velmora
