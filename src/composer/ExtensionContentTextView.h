// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AtomicProperty.h"
#include "views/KeyCommands.h"

#include <QPointer>
#include <QTextEdit>

#include <optional>

namespace velmora {

class ExtensionContentTextView;

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
// delegate before every editing command.
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

protected:
    // The selection as HTML and plain text only. Qt's own copy adds an OpenDocument version,
    // whose writer reads every image the selection names from disk.
    QMimeData* createMimeDataFromSelection() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    AtomicProperty<QPointer<QObject>> m_myDelegate;
    std::optional<KeyCommand> m_currentKeyCommand;
};

} // namespace velmora
