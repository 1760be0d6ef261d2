// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

class QMenu;
class QTextEdit;

namespace velmora {

class SpellHighlighter;

// Puts the spelling entries at the top of a text field's context menu when the word at the
// position is misspelt: its suggestions (choosing one replaces the word, as one undo step),
// "No Suggestions" when there are none, and "Add to Dictionary". Otherwise adds nothing.
void addSpellingActions(QMenu& menu, QTextEdit& edit, SpellHighlighter& highlighter, int position);

} // namespace velmora
