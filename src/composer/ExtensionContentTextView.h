// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"
#include "views/KeyCommands.h"

#include <QPointer>
#include <QTextEdit>

#include <memory>
#include <optional>

namespace velmora {

class ExtensionContentTextView;
class SpellHighlighter;
class Speller;

// What the body view's delegate offers: asked before each editing command.
class ExtensionContentTextViewDelegate {
public:
    virtual ~ExtensionContentTextViewDelegate() = default;
    // selector is the command's Cocoa name ("insertNewline:", "noop:" for a key bound to
    // nothing); the key press behind it is view->currentKeyCommand(). True: the command counts
    // as handled and the view does not perform it.
    virtual bool extensionContentTextView(ExtensionContentTextView* view,
                                          const QString& selector) = 0;
};

// The message body: rich text that takes no drops, never drags its selection out, and asks its
// delegate before every editing command. Its spelling is checked as the user types, in the
// user's languages, once it is first shown.
class ExtensionContentTextView : public QTextEdit {
    Q_OBJECT
public:
    explicit ExtensionContentTextView(QWidget* parent = nullptr);
    explicit ExtensionContentTextView(const QRect& frame, QWidget* parent = nullptr);

    // Any object; it is asked only when it implements ExtensionContentTextViewDelegate. Not
    // owned: a deleted delegate counts as none.
    QObject* myDelegate() const { return m_myDelegate.get(); }
    void setMyDelegate(QObject* delegate) { m_myDelegate.set(delegate); }

    // The key press whose command is being decided on; empty outside that moment.
    const std::optional<KeyCommand>& currentKeyCommand() const { return m_currentKeyCommand; }

    // Whether the command counts as handled: the delegate's answer, or true when there is no
    // delegate that implements the hook, so that a bare view performs no editing command.
    bool textView(ExtensionContentTextView* textView, const QString& selector);

    // The speller that checks the body; null: no checking. Setting one (null too) keeps the
    // user's own from being loaded.
    std::shared_ptr<Speller> speller() const;
    void setSpeller(std::shared_ptr<Speller> speller);
    // Loads the speller for the user's languages in the background and checks with it once it
    // is there. The first showing of the view does this unless a speller was set.
    void checkSpellingForUser();
    // Whether parts of the body still wait to be checked (a long text is checked in slices).
    bool isCheckingSpelling() const;

protected:
    // The selection as HTML and plain text only. Qt's own copy adds an OpenDocument version,
    // whose writer reads every image the selection names from disk.
    QMimeData* createMimeDataFromSelection() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    AtomicProperty<QPointer<QObject>> m_myDelegate;
    std::optional<KeyCommand> m_currentKeyCommand;
    SpellHighlighter* m_spellHighlighter = nullptr;
    // Counts the choices of speller, so that a load finishing after a later choice is dropped.
    int m_spellerRequest = 0;
    // Tells a background load whether the view still exists when it is done.
    std::shared_ptr<int> m_lifetime = std::make_shared<int>();
};

} // namespace velmora
