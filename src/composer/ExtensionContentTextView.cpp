// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "composer/ExtensionContentTextView.h"

#include "composer/TextCommands.h"
#include "platform/InertTextDocument.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QTextDocumentFragment>

namespace velmora {

namespace {

// The Edit menu's shortcuts, as on the Mac (Command is Ctrl) plus the PC's Insert pair. They
// act before any key binding, as menu key equivalents do, so copy, cut, paste, undo and select
// all work whatever the delegate says about commands. Linux's Alt-Backspace undo and
// Shift-Delete cut are left out: those keys are word deletion and forward deletion here.
using EditAction = void (QTextEdit::*)();

EditAction editActionFor(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const int key = event.key();
    if (modifiers == Qt::ControlModifier) {
        switch (key) {
        case Qt::Key_C:
        case Qt::Key_Insert:
            return &QTextEdit::copy;
        case Qt::Key_X:
            return &QTextEdit::cut;
        case Qt::Key_V:
            return &QTextEdit::paste;
        case Qt::Key_Z:
            return &QTextEdit::undo;
        case Qt::Key_A:
            return &QTextEdit::selectAll;
        default:
            return nullptr;
        }
    }
    if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_Z)
        return &QTextEdit::redo;
    if (modifiers == Qt::ShiftModifier && key == Qt::Key_Insert)
        return &QTextEdit::paste;
    return nullptr;
}

} // namespace

ExtensionContentTextView::ExtensionContentTextView(QWidget* parent)
    : ExtensionContentTextView(QRect(), parent) {}

ExtensionContentTextView::ExtensionContentTextView(const QRect& frame, QWidget* parent)
    : QTextEdit(parent) {
    // Whatever lands in the body (shared HTML, a paste) shows its images as placeholders and
    // never has them read from a file.
    setDocument(new InertTextDocument(this));
    setGeometry(frame);
    setAcceptRichText(true);
    setUndoRedoEnabled(true);
    // Nothing can be dropped in, whatever its kind.
    setAcceptDrops(false);
    viewport()->setAcceptDrops(false);
}

bool ExtensionContentTextView::textView(ExtensionContentTextView* textView,
                                        const QString& selector) {
    auto* delegate = dynamic_cast<ExtensionContentTextViewDelegate*>(myDelegate());
    if (!delegate)
        return true;
    return delegate->extensionContentTextView(textView, selector);
}

QMimeData* ExtensionContentTextView::createMimeDataFromSelection() const {
    const QTextDocumentFragment fragment(textCursor());
    auto* data = new QMimeData;
    data->setHtml(fragment.toHtml());
    data->setText(fragment.toPlainText());
    return data;
}

void ExtensionContentTextView::keyPressEvent(QKeyEvent* event) {
    if (const EditAction action = editActionFor(*event)) {
        (this->*action)();
        event->accept();
        return;
    }
    if (isModifierKey(event->key())) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    KeyCommand command = keyCommandForEvent(*event);
    // Typing is not a command: no one is asked about it.
    if (command.selector == QLatin1String("insertText:")) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    const QString selector = command.selector;
    bool handled;
    {
        const QScopedValueRollback<std::optional<KeyCommand>> current(m_currentKeyCommand,
                                                                      std::move(command));
        handled = textView(this, selector);
    }
    if (!handled && selector == QLatin1String("noop:")) {
        // Bound to nothing: the key goes on to the window, where a shortcut may want it.
        event->ignore();
        return;
    }
    if (!handled)
        performTextCommand(*this, selector);
    event->accept();
}

void ExtensionContentTextView::mousePressEvent(QMouseEvent* event) {
    // A press inside the selection would start dragging it; the press starts a new selection
    // instead, as a press anywhere else does.
    QTextCursor cursor = textCursor();
    if (event->button() == Qt::LeftButton && !(event->modifiers() & Qt::ShiftModifier) &&
        cursor.hasSelection()) {
        const int at = cursorForPosition(event->position().toPoint()).position();
        if (at >= cursor.selectionStart() && at <= cursor.selectionEnd()) {
            cursor.clearSelection();
            setTextCursor(cursor);
        }
    }
    QTextEdit::mousePressEvent(event);
}

} // namespace velmora
