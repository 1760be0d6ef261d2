// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/TokenEditor.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace velmora {

class ExtensionSuggestionController;
class SuggestionHost;
class TokenFieldLayout;

// The composer's To field: a one-line editor whose committed tokens are recipients. It forwards
// key and mouse events to its editing state, drives the suggestion popup from the token under
// the caret, and tells the composer whenever the recipients may have changed.
//
// Keys reach doCommandBySelector() under their Cocoa command names ("moveUp:",
// "insertNewline:", ...) before the editor acts on them; a command it reports handled is not
// performed. A comma, a paste, and the field losing focus commit typed text through
// shouldAddObjects().
class ExtensionTokenField : public QWidget {
    Q_OBJECT
public:
    explicit ExtensionTokenField(QWidget* parent = nullptr);
    ~ExtensionTokenField() override;

    // The ordered tokens: committed recipients and runs of typed text.
    QList<Token> objectValue() const { return m_editor.tokens(); }
    void setObjectValue(const QList<Token>& tokens);

    QString placeholderString() const { return m_placeholder; }
    void setPlaceholderString(const QString& text);

    // The controller serving this field, held weakly; set by the composer and by the
    // controller whenever it opens its popup for this field.
    ExtensionSuggestionController* suggestioncontroller() const;
    void setSuggestioncontroller(ExtensionSuggestionController* controller);
    // The composer: the suggestion controller's parent, when it offers manageAddresses.
    SuggestionHost* composerComtroller() const;

    // The field's editing state, which the operations below act on as their text view.
    TokenEditor& fieldEditor() { return m_editor; }

    // The text a token shows, and the same text when a token is edited in place.
    QString displayStringForRepresentedObject(const Token& token) const;
    QString editingStringForRepresentedObject(const Token& token) const;
    // Shows the suggestions for the text being typed; offers no completions of its own.
    QStringList completionsForSubstring(const QString& substring, qsizetype tokenIndex,
                                        int* selectedIndex);
    // The recipients that replace objects about to be committed; tells the composer.
    QList<Token> shouldAddObjects(const QList<Token>& objects, qsizetype index);
    // Answers whether the field handled a key command itself.
    bool doCommandBySelector(TokenEditor& textView, const QString& selector);

    qsizetype tokenIndex(const TokenEditor& textView) const { return textView.tokenIndex(); }
    // Suggestions for the token under the caret, or none when it is not text.
    void populateToken(TokenEditor& textView);
    // Takes the suggestion list's selected row in place of the token under the caret.
    bool addObject(TokenEditor& textView);
    bool addObject(const std::optional<Recipient>& object, TokenEditor& textView);
    void NotifyChangedrecipients();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // Asks the suggestion controller for the suggestions of the text being typed, if any.
    void askForCompletions();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void performCommand(const QString& selector, QKeyEvent* event);
    void insertTypedText(const QString& text);
    void commitEditedText();
    void commitTextToken(qsizetype index);
    void commitAllText();
    void scheduleRefilter();
    void copy() const;
    void paste();
    void edited();
    QRect contentRect() const;
    qreal contentX(const QPoint& widgetPoint) const;
    const TokenFieldLayout& layout() const;

    TokenEditor m_editor;
    QPointer<ExtensionSuggestionController> m_suggestioncontroller;
    QString m_placeholder;
    mutable std::shared_ptr<TokenFieldLayout> m_layout; // rebuilt after each change
    qreal m_scrollX = 0;
    QTimer m_blink;
    bool m_caretShown = false;
};

} // namespace velmora
