// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/TokenFieldAccessibility.h"

#include "recipients/ExtensionTokenField.h"

#include <QAccessibleWidget>

#include <mutex>

namespace velmora {

AccessibleTokenText::AccessibleTokenText(const QList<Token>& tokens) {
    static const QString separator = QStringLiteral(", ");
    for (const Token& token : tokens) {
        Piece piece;
        piece.committed = isCommitted(token);
        piece.width = piece.committed ? 1 : textOf(token).size();
        piece.position = m_length;
        m_length += piece.width;
        if (!m_pieces.isEmpty())
            m_text += separator;
        const QString shown = piece.committed ? displayString(token) : textOf(token);
        piece.offset = int(m_text.size());
        piece.length = int(shown.size());
        m_text += shown;
        m_pieces.append(piece);
    }
}

int AccessibleTokenText::offsetForPosition(qsizetype position) const {
    for (const Piece& piece : m_pieces) {
        if (position >= piece.position && position < piece.position + piece.width)
            return piece.offset + (piece.committed ? 0 : int(position - piece.position));
    }
    return int(m_text.size());
}

qsizetype AccessibleTokenText::positionForOffset(int offset) const {
    for (const Piece& piece : m_pieces) {
        if (offset > piece.offset + piece.length)
            continue;
        if (offset <= piece.offset)
            return piece.position; // at its start, or in the separator before it
        if (!piece.committed)
            return piece.position + (offset - piece.offset);
        return offset - piece.offset <= piece.length / 2 ? piece.position
                                                         : piece.position + piece.width;
    }
    return m_length;
}

namespace {

class TokenFieldAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit TokenFieldAccessible(ExtensionTokenField* field)
        : QAccessibleWidget(field, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return spoken().text();
        if (kind == QAccessible::Name && field()->accessibleName().isEmpty())
            return field()->placeholderString();
        return QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.selectableText = true;
        return state;
    }

    // Selection, in offsets of the spoken text.
    void selection(int index, int* start, int* end) const override {
        *start = *end = 0;
        const TokenEditor& editor = field()->fieldEditor();
        if (index != 0 || !editor.hasSelection())
            return;
        const AccessibleTokenText text = spoken();
        const TokenEditor::Range range = editor.selectedRange();
        *start = text.offsetForPosition(range.location);
        *end = range.end() >= editor.length() ? int(text.text().size())
                                              : text.offsetForPosition(range.end());
    }
    int selectionCount() const override { return field()->fieldEditor().hasSelection() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override {
        const qsizetype caret = field()->fieldEditor().caret();
        field()->setSelectedRange(caret, caret);
    }
    void setSelection(int, int start, int end) override {
        const AccessibleTokenText text = spoken();
        field()->setSelectedRange(text.positionForOffset(start), text.positionForOffset(end));
    }

    int cursorPosition() const override {
        return spoken().offsetForPosition(field()->fieldEditor().caret());
    }
    void setCursorPosition(int offset) override {
        const qsizetype position = spoken().positionForOffset(offset);
        field()->setSelectedRange(position, position);
    }

    QString text(int start, int end) const override {
        const QString all = spoken().text();
        start = std::clamp(start, 0, int(all.size()));
        end = std::clamp(end, start, int(all.size()));
        return all.mid(start, end - start);
    }
    int characterCount() const override { return int(spoken().text().size()); }

    QRect characterRect(int offset) const override {
        const QRect local = field()->characterRect(spoken().positionForOffset(offset));
        return QRect(field()->mapToGlobal(local.topLeft()), local.size());
    }
    int offsetAtPoint(const QPoint& point) const override {
        return spoken().offsetForPosition(field()->positionAt(field()->mapFromGlobal(point)));
    }
    void scrollToSubstring(int, int) override {}
    QString attributes(int offset, int* start, int* end) const override {
        *start = *end = offset;
        return {};
    }

private:
    ExtensionTokenField* field() const { return static_cast<ExtensionTokenField*>(widget()); }
    AccessibleTokenText spoken() const { return AccessibleTokenText(field()->objectValue()); }
};

QAccessibleInterface* tokenFieldFactory(const QString& key, QObject* object) {
    if (key != QLatin1String(ExtensionTokenField::staticMetaObject.className()))
        return nullptr;
    if (auto* field = qobject_cast<ExtensionTokenField*>(object))
        return new TokenFieldAccessible(field);
    return nullptr;
}

} // namespace

void installTokenFieldAccessibility() {
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(&tokenFieldFactory); });
}

} // namespace velmora
