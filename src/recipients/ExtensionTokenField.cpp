// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ExtensionTokenField.h"

#include "recipients/BackgroundDelay.h"
#include "recipients/ExtensionSuggestionController.h"
#include "recipients/SuggestionHost.h"
#include "recipients/TokenFieldLayout.h"
#include "recipients/TokenFieldPainter.h"
#include "recipients/TokenSplitting.h"
#include "views/KeyCommands.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleHints>

namespace velmora {

namespace {

// How long the field waits after Backspace before reading the token again: the deletion is
// done by the editor after the command hook returns.
constexpr std::chrono::milliseconds kRefilterDelay(250);

enum class Move { Left, Right, Start, End };

struct Motion {
    const char* selector;
    Move move;
    bool extend;
};

// A one-line field has no lines above or below: up, page up and the starts of line, paragraph
// and document all lead to its start. Word motions move by one character.
constexpr Motion kMotions[] = {
    {"moveLeft:", Move::Left, false},
    {"moveBackward:", Move::Left, false},
    {"moveWordLeft:", Move::Left, false},
    {"moveLeftAndModifySelection:", Move::Left, true},
    {"moveBackwardAndModifySelection:", Move::Left, true},
    {"moveWordLeftAndModifySelection:", Move::Left, true},
    {"moveRight:", Move::Right, false},
    {"moveForward:", Move::Right, false},
    {"moveWordRight:", Move::Right, false},
    {"moveRightAndModifySelection:", Move::Right, true},
    {"moveForwardAndModifySelection:", Move::Right, true},
    {"moveWordRightAndModifySelection:", Move::Right, true},
    {"moveUp:", Move::Start, false},
    {"moveToLeftEndOfLine:", Move::Start, false},
    {"moveToBeginningOfParagraph:", Move::Start, false},
    {"moveToBeginningOfDocument:", Move::Start, false},
    {"scrollToBeginningOfDocument:", Move::Start, false},
    {"scrollPageUp:", Move::Start, false},
    {"pageUp:", Move::Start, false},
    {"moveUpAndModifySelection:", Move::Start, true},
    {"moveToLeftEndOfLineAndModifySelection:", Move::Start, true},
    {"moveToBeginningOfParagraphAndModifySelection:", Move::Start, true},
    {"moveParagraphBackwardAndModifySelection:", Move::Start, true},
    {"moveToBeginningOfDocumentAndModifySelection:", Move::Start, true},
    {"pageUpAndModifySelection:", Move::Start, true},
    {"moveDown:", Move::End, false},
    {"moveToRightEndOfLine:", Move::End, false},
    {"moveToEndOfParagraph:", Move::End, false},
    {"moveToEndOfDocument:", Move::End, false},
    {"scrollToEndOfDocument:", Move::End, false},
    {"scrollPageDown:", Move::End, false},
    {"pageDown:", Move::End, false},
    {"moveDownAndModifySelection:", Move::End, true},
    {"moveToRightEndOfLineAndModifySelection:", Move::End, true},
    {"moveToEndOfParagraphAndModifySelection:", Move::End, true},
    {"moveParagraphForwardAndModifySelection:", Move::End, true},
    {"moveToEndOfDocumentAndModifySelection:", Move::End, true},
    {"pageDownAndModifySelection:", Move::End, true},
};

// Performs a caret motion; false when the command is not one.
bool performMotion(TokenEditor& editor, const QString& selector) {
    for (const Motion& motion : kMotions) {
        if (selector != QLatin1String(motion.selector))
            continue;
        switch (motion.move) {
        case Move::Left:
            editor.moveLeft(motion.extend);
            break;
        case Move::Right:
            editor.moveRight(motion.extend);
            break;
        case Move::Start:
            editor.moveToStart(motion.extend);
            break;
        case Move::End:
            editor.moveToEnd(motion.extend);
            break;
        }
        return true;
    }
    return false;
}

} // namespace

ExtensionTokenField::ExtensionTokenField(QWidget* parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setCursor(Qt::IBeamCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_blink.setInterval(QGuiApplication::styleHints()->cursorFlashTime() / 2);
    connect(&m_blink, &QTimer::timeout, this, [this] {
        m_caretShown = !m_caretShown;
        update();
    });
}

ExtensionTokenField::~ExtensionTokenField() = default;

void ExtensionTokenField::setObjectValue(const QList<Token>& tokens) {
    m_editor.setTokens(tokens);
    edited();
}

void ExtensionTokenField::setPlaceholderString(const QString& text) {
    if (text == m_placeholder)
        return;
    m_placeholder = text;
    update();
}

ExtensionSuggestionController* ExtensionTokenField::suggestioncontroller() const {
    return m_suggestioncontroller;
}

void ExtensionTokenField::setSuggestioncontroller(ExtensionSuggestionController* controller) {
    m_suggestioncontroller = controller;
}

SuggestionHost* ExtensionTokenField::composerComtroller() const {
    return m_suggestioncontroller ? dynamic_cast<SuggestionHost*>(m_suggestioncontroller->parent())
                                  : nullptr;
}

QString ExtensionTokenField::displayStringForRepresentedObject(const Token& token) const {
    return displayString(token);
}

// The same as the display string: a token edited in place shows its pretty form, not its mail.
QString ExtensionTokenField::editingStringForRepresentedObject(const Token& token) const {
    return displayString(token);
}

QStringList ExtensionTokenField::completionsForSubstring(const QString& substring, qsizetype,
                                                         int*) {
    if (auto* controller = suggestioncontroller())
        controller->suggestForTextField(this, substring);
    return {};
}

QList<Token> ExtensionTokenField::shouldAddObjects(const QList<Token>& objects, qsizetype) {
    AddressLookup lookup;
    if (auto* controller = suggestioncontroller())
        lookup = [controller](const QString& mail) { return controller->addressForMail(mail); };
    QList<Token> recipients = recipientsForAddedObjects(objects, lookup);
    NotifyChangedrecipients();
    return recipients;
}

bool ExtensionTokenField::doCommandBySelector(TokenEditor& textView, const QString& selector) {
    ExtensionSuggestionController* controller = suggestioncontroller();
    if (selector == QLatin1String("moveUp:")) {
        if (controller)
            controller->selectPrev();
        return true;
    }
    if (selector == QLatin1String("moveDown:")) {
        if (controller)
            controller->selectNext();
        return true;
    }
    if (selector == QLatin1String("cancelOperation:")) {
        if (controller)
            controller->cancelSuggestions();
        return true;
    }
    if (selector == QLatin1String("deleteBackward:")) {
        if (controller && controller->visible())
            scheduleRefilter();
        NotifyChangedrecipients();
        return false;
    }
    const bool tab = selector == QLatin1String("insertTab:");
    if (tab || selector == QLatin1String("insertNewline:")) {
        bool handled = false;
        if (controller && controller->view())
            handled = addObject(textView);
        // Tab takes the suggestion and still moves the focus on.
        return tab ? false : handled;
    }
    NotifyChangedrecipients();
    return false;
}

void ExtensionTokenField::populateToken(TokenEditor& textView) {
    const qsizetype index = tokenIndex(textView);
    const QList<Token> tokens = textView.tokens();
    if (index < 0 || index >= tokens.size())
        return;
    ExtensionSuggestionController* controller = suggestioncontroller();
    if (!controller)
        return;
    if (const auto* text = std::get_if<QString>(&tokens[index]))
        controller->suggestForTextField(this, *text);
    else
        controller->cancelSuggestions();
}

bool ExtensionTokenField::addObject(TokenEditor& textView) {
    ExtensionSuggestionController* controller = suggestioncontroller();
    return addObject(controller ? controller->objectForSelectedRow() : std::nullopt, textView);
}

bool ExtensionTokenField::addObject(const std::optional<Recipient>& object, TokenEditor& textView) {
    const qsizetype index = tokenIndex(textView);
    if (index < 0)
        return false;
    // Past the end there is nothing to replace, but the command still counts as handled.
    if (object && index < textView.tokens().size()) {
        textView.replaceToken(index, {toToken(*object)});
        edited();
        if (auto* controller = suggestioncontroller())
            controller->cancelSuggestions();
    }
    NotifyChangedrecipients();
    return true;
}

void ExtensionTokenField::NotifyChangedrecipients() {
    if (SuggestionHost* composer = composerComtroller())
        composer->manageAddresses();
}

void ExtensionTokenField::scheduleRefilter() {
    // A field gone meanwhile is never called.
    afterDelayInBackground(kRefilterDelay, this, [this] { populateToken(m_editor); });
}

bool ExtensionTokenField::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        // Tab is a command of the field (it takes the selected suggestion) before it moves the
        // focus, so it may not be taken for focus changes first.
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
            keyPressEvent(key);
            return true;
        }
    } else if (event->type() == QEvent::ShortcutOverride) {
        // Editing keys belong to the field, not to shortcuts of the window around it.
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Cut) ||
            key->matches(QKeySequence::Paste) || key->matches(QKeySequence::SelectAll) ||
            keyCommandForEvent(*key).selector != QLatin1String("noop:")) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void ExtensionTokenField::keyPressEvent(QKeyEvent* event) {
    if (isModifierKey(event->key())) {
        event->ignore();
        return;
    }
    // The menu's editing shortcuts come before the key bindings, as on the Mac.
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    if (event->matches(QKeySequence::Cut)) {
        copy();
        m_editor.deleteSelection();
        edited();
        NotifyChangedrecipients();
        return;
    }
    if (event->matches(QKeySequence::Paste)) {
        paste();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        m_editor.selectAll();
        edited();
        return;
    }
    const KeyCommand command = keyCommandForEvent(*event);
    if (command.selector == QLatin1String("insertText:")) {
        insertTypedText(command.characters);
        return;
    }
    if (doCommandBySelector(m_editor, command.selector)) {
        edited();
        return;
    }
    performCommand(command.selector, event);
}

void ExtensionTokenField::performCommand(const QString& selector, QKeyEvent* event) {
    if (performMotion(m_editor, selector)) {
        // nothing more: edited() below shows the caret where it went
    } else if (selector == QLatin1String("deleteBackward:") ||
               selector == QLatin1String("deleteWordBackward:") ||
               selector == QLatin1String("deleteBackwardByDecomposingPreviousCharacter:")) {
        m_editor.deleteBackward();
    } else if (selector == QLatin1String("deleteForward:") ||
               selector == QLatin1String("deleteWordForward:")) {
        m_editor.deleteForward();
    } else if (selector == QLatin1String("deleteToBeginningOfLine:")) {
        if (!m_editor.hasSelection())
            m_editor.moveToStart(true);
        m_editor.deleteSelection();
    } else if (selector == QLatin1String("deleteToEndOfLine:") ||
               selector == QLatin1String("deleteToEndOfParagraph:")) {
        if (!m_editor.hasSelection())
            m_editor.moveToEnd(true);
        m_editor.deleteSelection();
    } else if (selector == QLatin1String("insertNewline:") ||
               selector == QLatin1String("insertNewlineIgnoringFieldEditor:")) {
        // A field ends its editing on Return: what was typed is committed.
        commitAllText();
    } else if (selector == QLatin1String("insertTab:") ||
               selector == QLatin1String("insertTabIgnoringFieldEditor:")) {
        focusNextChild();
    } else if (selector == QLatin1String("insertBacktab:")) {
        focusPreviousChild();
    } else {
        event->ignore();
        return;
    }
    edited();
}

void ExtensionTokenField::insertTypedText(const QString& text) {
    // The comma is the tokenizing character: it commits what was typed before it.
    const QStringList parts = text.split(u',');
    for (qsizetype i = 0; i < parts.size(); ++i) {
        if (i > 0)
            commitEditedText();
        m_editor.insertText(parts[i]);
    }
    edited();
    if (!parts.back().isEmpty())
        askForCompletions();
}

void ExtensionTokenField::askForCompletions() {
    const qsizetype index = m_editor.editedTextToken();
    if (index < 0)
        return;
    int selected = -1;
    completionsForSubstring(textOf(m_editor.tokens()[index]), index, &selected);
}

void ExtensionTokenField::commitEditedText() {
    const qsizetype index = m_editor.editedTextToken();
    if (index < 0)
        return;
    const qsizetype start = m_editor.tokenStart(index);
    const QString text = textOf(m_editor.tokens()[index]);
    const QString before = text.left(m_editor.caret() - start);
    if (before.isEmpty())
        return;
    // What follows the caret stays text; the caret goes after the new tokens.
    QList<Token> replacement = shouldAddObjects({before}, index);
    const qsizetype committed = replacement.size();
    if (const QString after = text.mid(before.size()); !after.isEmpty())
        replacement.append(after);
    m_editor.replaceToken(index, replacement);
    m_editor.setCaret(start + committed);
}

void ExtensionTokenField::commitTextToken(qsizetype index) {
    m_editor.replaceToken(index, shouldAddObjects({m_editor.tokens()[index]}, index));
}

void ExtensionTokenField::commitAllText() {
    for (qsizetype i = m_editor.tokens().size() - 1; i >= 0; --i) {
        if (!isCommitted(m_editor.tokens()[i]))
            commitTextToken(i);
    }
    m_editor.moveToEnd(false);
    edited();
}

void ExtensionTokenField::copy() const {
    QStringList pieces;
    for (const Token& token : m_editor.selectedTokens())
        pieces.append(displayStringForRepresentedObject(token));
    if (!pieces.isEmpty())
        QGuiApplication::clipboard()->setText(pieces.join(QStringLiteral(", ")));
}

void ExtensionTokenField::paste() {
    const QString text = QGuiApplication::clipboard()->text();
    if (text.isEmpty())
        return;
    m_editor.insertText(text);
    const qsizetype index = m_editor.editedTextToken();
    if (index >= 0)
        commitTextToken(index);
    edited();
}

void ExtensionTokenField::inputMethodEvent(QInputMethodEvent* event) {
    if (!event->commitString().isEmpty())
        insertTypedText(event->commitString());
    event->accept();
}

QVariant ExtensionTokenField::inputMethodQuery(Qt::InputMethodQuery query) const {
    switch (query) {
    case Qt::ImEnabled:
        return true;
    case Qt::ImCursorRectangle: {
        const QRect content = contentRect();
        const qreal x = content.left() - m_scrollX + layout().xForPosition(m_editor.caret());
        return QRectF(x, content.top(), 1, content.height()).toRect();
    }
    case Qt::ImCursorPosition:
        return int(m_editor.caret());
    case Qt::ImAnchorPosition:
        return int(m_editor.anchor());
    case Qt::ImSurroundingText:
        return m_editor.text();
    default:
        return QWidget::inputMethodQuery(query);
    }
}

void ExtensionTokenField::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    setFocus(Qt::MouseFocusReason);
    m_editor.setCaret(layout().positionForX(contentX(event->position().toPoint())),
                      event->modifiers().testFlag(Qt::ShiftModifier));
    edited();
}

void ExtensionTokenField::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    m_editor.setCaret(layout().positionForX(contentX(event->position().toPoint())), true);
    edited();
}

void ExtensionTokenField::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const qreal x = contentX(event->position().toPoint());
    const qsizetype token = layout().committedTokenAtX(x);
    if (token >= 0) {
        // The token turns back into text the user can edit.
        m_editor.replaceToken(token, {editingStringForRepresentedObject(m_editor.tokens()[token])});
        edited();
        NotifyChangedrecipients();
        return;
    }
    for (const TokenFieldLayout::Piece& piece : layout().pieces()) {
        if (!piece.committed && x >= piece.x && x < piece.x + piece.advance) {
            m_editor.setCaret(piece.start);
            m_editor.setCaret(piece.start + piece.width, true);
            edited();
            return;
        }
    }
}

void ExtensionTokenField::focusInEvent(QFocusEvent* event) {
    m_blink.start();
    m_caretShown = true;
    update();
    QWidget::focusInEvent(event);
}

void ExtensionTokenField::focusOutEvent(QFocusEvent* event) {
    m_blink.stop();
    m_caretShown = false;
    // Switching windows or opening a menu is no end of editing.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        commitAllText();
    update();
    QWidget::focusOutEvent(event);
}

void ExtensionTokenField::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        m_layout.reset();
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

QSize ExtensionTokenField::sizeHint() const {
    return {240, int(std::ceil(layout().lineHeight())) + 6};
}

QSize ExtensionTokenField::minimumSizeHint() const {
    return {40, sizeHint().height()};
}

void ExtensionTokenField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    TokenFieldPaintState state;
    state.content = contentRect();
    state.scrollX = m_scrollX;
    state.selection = m_editor.selectedRange();
    state.caret = m_editor.caret();
    state.showCaret = hasFocus() && m_caretShown && !m_editor.hasSelection();
    state.placeholder = m_placeholder;
    state.palette = palette();
    paintTokenField(painter, layout(), state);
}

// After every change: a new layout, the caret kept in view and shown steadily for a moment.
void ExtensionTokenField::edited() {
    m_layout.reset();
    const qreal visible = std::max(1, contentRect().width() - 1);
    const qreal caretX = layout().xForPosition(m_editor.caret());
    if (caretX - m_scrollX > visible)
        m_scrollX = caretX - visible;
    if (caretX < m_scrollX)
        m_scrollX = caretX;
    m_scrollX = std::max<qreal>(0, std::min(m_scrollX, layout().width() - visible + 1));
    if (hasFocus()) {
        m_caretShown = true;
        m_blink.start();
    }
    update();
}

QRect ExtensionTokenField::contentRect() const {
    return rect().adjusted(2, 0, -2, 0);
}

qreal ExtensionTokenField::contentX(const QPoint& widgetPoint) const {
    return widgetPoint.x() - contentRect().left() + m_scrollX;
}

const TokenFieldLayout& ExtensionTokenField::layout() const {
    if (!m_layout)
        m_layout = std::make_shared<TokenFieldLayout>(m_editor.tokens(), font());
    return *m_layout;
}

} // namespace velmora
