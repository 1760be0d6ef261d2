// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/TextCommands.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>

#include <functional>

namespace velmora {

namespace {

using Op = QTextCursor::MoveOperation;

const QLatin1String kModifySelection("AndModifySelection:");

// The caret moves of the Mac's text system, by the name of the plain move.
bool moveFor(QStringView name, Op& op) {
    static const struct {
        const char* name;
        Op op;
    } moves[] = {
        {"moveLeft:", Op::Left},
        {"moveRight:", Op::Right},
        {"moveUp:", Op::Up},
        {"moveDown:", Op::Down},
        {"moveBackward:", Op::PreviousCharacter},
        {"moveForward:", Op::NextCharacter},
        {"moveWordLeft:", Op::PreviousWord},
        {"moveWordRight:", Op::NextWord},
        {"moveToLeftEndOfLine:", Op::StartOfLine},
        {"moveToRightEndOfLine:", Op::EndOfLine},
        {"moveToBeginningOfParagraph:", Op::StartOfBlock},
        {"moveToEndOfParagraph:", Op::EndOfBlock},
        {"moveParagraphBackward:", Op::StartOfBlock},
        {"moveParagraphForward:", Op::EndOfBlock},
        {"moveToBeginningOfDocument:", Op::Start},
        {"moveToEndOfDocument:", Op::End},
    };
    for (const auto& move : moves) {
        if (name == QLatin1String(move.name)) {
            op = move.op;
            return true;
        }
    }
    return false;
}

void move(QTextEdit& edit, QStringView selector, Op op, bool select) {
    QTextCursor cursor = edit.textCursor();
    const auto mode = select ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor;
    if (!select && cursor.hasSelection() && (op == Op::Left || op == Op::Right)) {
        // Left and Right end a selection at its own edge rather than moving from the caret.
        cursor.setPosition(op == Op::Left ? cursor.selectionStart() : cursor.selectionEnd());
    } else {
        // Moving by paragraphs from a paragraph's edge goes on to the next one.
        const bool byParagraph = selector.startsWith(QLatin1String("moveParagraph"));
        if (byParagraph && op == Op::StartOfBlock && cursor.atBlockStart())
            cursor.movePosition(Op::PreviousBlock, mode);
        else if (byParagraph && op == Op::EndOfBlock && cursor.atBlockEnd())
            cursor.movePosition(Op::NextBlock, mode);
        cursor.movePosition(op, mode);
    }
    edit.setTextCursor(cursor);
}

// Deletes the selection, or else what lies between the caret and where op takes it.
void deleteTo(QTextEdit& edit, Op op) {
    QTextCursor cursor = edit.textCursor();
    if (!cursor.hasSelection()) {
        // At a paragraph's end "to the end of the paragraph" joins it with the next one.
        if (op == Op::EndOfBlock && cursor.atBlockEnd())
            op = Op::NextCharacter;
        cursor.movePosition(op, QTextCursor::KeepAnchor);
    }
    cursor.removeSelectedText();
    edit.setTextCursor(cursor);
}

void insertText(QTextEdit& edit, const QString& text) {
    QTextCursor cursor = edit.textCursor();
    cursor.insertText(text);
    edit.setTextCursor(cursor);
}

void insertParagraph(QTextEdit& edit) {
    QTextCursor cursor = edit.textCursor();
    cursor.insertBlock();
    edit.setTextCursor(cursor);
}

void scrollBy(QTextEdit& edit, QAbstractSlider::SliderAction action) {
    edit.verticalScrollBar()->triggerAction(action);
}

// Moves the caret by one page: the caret keeps its place in the view while the text scrolls.
void page(QTextEdit& edit, bool down, bool select) {
    const QPoint caret = edit.cursorRect().center();
    const int before = edit.verticalScrollBar()->value();
    scrollBy(edit, down ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
    QTextCursor cursor = edit.textCursor();
    int target = edit.cursorForPosition(caret).position();
    if (edit.verticalScrollBar()->value() == before)
        target = down ? edit.document()->characterCount() - 1 : 0;
    cursor.setPosition(target, select ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    edit.setTextCursor(cursor);
}

// Swaps the characters on both sides of the caret (the two before it at a paragraph's end)
// and leaves the caret after them.
void transpose(QTextEdit& edit) {
    QTextCursor cursor = edit.textCursor();
    if (cursor.hasSelection() || cursor.atBlockStart())
        return;
    if (cursor.atBlockEnd()) {
        if (cursor.positionInBlock() < 2)
            return;
        cursor.movePosition(Op::PreviousCharacter);
    }
    cursor.movePosition(Op::PreviousCharacter);
    cursor.movePosition(Op::NextCharacter, QTextCursor::KeepAnchor);
    cursor.movePosition(Op::NextCharacter, QTextCursor::KeepAnchor);
    const QString pair = cursor.selectedText();
    if (pair.size() != 2)
        return;
    cursor.insertText(QString(pair.at(1)) + pair.at(0));
    edit.setTextCursor(cursor);
}

using Action = std::function<void(QTextEdit&)>;

struct Command {
    const char* selector;
    bool edits; // changes the text, so does nothing in a read-only edit
    Action action;
};

const Command* commandFor(QStringView selector) {
    static const Command commands[] = {
        {"insertNewline:", true, insertParagraph},
        {"insertNewlineIgnoringFieldEditor:", true, insertParagraph},
        {"insertLineBreak:", true,
         [](QTextEdit& e) { insertText(e, QString(QChar::LineSeparator)); }},
        {"insertTab:", true, [](QTextEdit& e) { insertText(e, QStringLiteral("\t")); }},
        {"insertTabIgnoringFieldEditor:", true,
         [](QTextEdit& e) { insertText(e, QStringLiteral("\t")); }},
        {"deleteBackward:", true, [](QTextEdit& e) { deleteTo(e, Op::PreviousCharacter); }},
        {"deleteBackwardByDecomposingPreviousCharacter:", true,
         [](QTextEdit& e) { deleteTo(e, Op::PreviousCharacter); }},
        {"deleteForward:", true, [](QTextEdit& e) { deleteTo(e, Op::NextCharacter); }},
        {"deleteWordBackward:", true, [](QTextEdit& e) { deleteTo(e, Op::PreviousWord); }},
        {"deleteWordForward:", true, [](QTextEdit& e) { deleteTo(e, Op::NextWord); }},
        {"deleteToBeginningOfLine:", true, [](QTextEdit& e) { deleteTo(e, Op::StartOfLine); }},
        {"deleteToEndOfLine:", true, [](QTextEdit& e) { deleteTo(e, Op::EndOfLine); }},
        {"deleteToEndOfParagraph:", true, [](QTextEdit& e) { deleteTo(e, Op::EndOfBlock); }},
        {"transpose:", true, transpose},
        {"scrollPageUp:", false,
         [](QTextEdit& e) { scrollBy(e, QAbstractSlider::SliderPageStepSub); }},
        {"scrollPageDown:", false,
         [](QTextEdit& e) { scrollBy(e, QAbstractSlider::SliderPageStepAdd); }},
        {"scrollToBeginningOfDocument:", false,
         [](QTextEdit& e) { scrollBy(e, QAbstractSlider::SliderToMinimum); }},
        {"scrollToEndOfDocument:", false,
         [](QTextEdit& e) { scrollBy(e, QAbstractSlider::SliderToMaximum); }},
        {"pageUp:", false, [](QTextEdit& e) { page(e, false, false); }},
        {"pageDown:", false, [](QTextEdit& e) { page(e, true, false); }},
        {"pageUpAndModifySelection:", false, [](QTextEdit& e) { page(e, false, true); }},
        {"pageDownAndModifySelection:", false, [](QTextEdit& e) { page(e, true, true); }},
        {"centerSelectionInVisibleArea:", false, [](QTextEdit& e) { e.ensureCursorVisible(); }},
        // A one-line field's business, or no command at all: known, nothing to do in a body.
        {"insertBacktab:", false, [](QTextEdit&) {}},
        {"cancelOperation:", false, [](QTextEdit&) {}},
        {"complete:", false, [](QTextEdit&) {}},
        {"yank:", false, [](QTextEdit&) {}},
        {"noop:", false, [](QTextEdit&) {}},
    };
    for (const Command& command : commands)
        if (selector == QLatin1String(command.selector))
            return &command;
    return nullptr;
}

} // namespace

bool performTextCommand(QTextEdit& edit, QStringView selector) {
    const bool select = selector.endsWith(kModifySelection);
    const QString name =
        select ? selector.chopped(kModifySelection.size()).toString() + QLatin1Char(':')
               : selector.toString();
    Op op;
    if (moveFor(name, op)) {
        move(edit, name, op, select);
        edit.ensureCursorVisible();
        return true;
    }
    const Command* command = commandFor(selector);
    if (!command)
        return false;
    if (command->edits && edit.isReadOnly())
        return true;
    command->action(edit);
    if (command->edits)
        edit.ensureCursorVisible();
    return true;
}

} // namespace velmora
