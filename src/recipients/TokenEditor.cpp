// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/TokenEditor.h"

#include <algorithm>

namespace velmora {

void TokenEditor::setTokens(const QList<Token>& tokens) {
    m_tokens = tokens;
    normalize();
    m_caret = m_anchor = length();
}

void TokenEditor::normalize() {
    QList<Token> out;
    out.reserve(m_tokens.size());
    for (Token& token : m_tokens) {
        if (auto* text = std::get_if<QString>(&token)) {
            text->remove(kTokenCharacter);
            if (text->isEmpty())
                continue;
            if (!out.isEmpty() && std::holds_alternative<QString>(out.back())) {
                std::get<QString>(out.back()) += *text;
                continue;
            }
        } else if (!recipientOf(token)) {
            continue;
        }
        out.append(std::move(token));
    }
    m_tokens = std::move(out);
}

QString TokenEditor::text() const {
    QString out;
    for (const Token& token : m_tokens) {
        if (isCommitted(token))
            out += kTokenCharacter;
        else
            out += std::get<QString>(token);
    }
    return out;
}

qsizetype TokenEditor::widthOf(const Token& token) {
    return isCommitted(token) ? 1 : std::get<QString>(token).size();
}

qsizetype TokenEditor::length() const {
    return tokenStart(m_tokens.size());
}

qsizetype TokenEditor::tokenStart(qsizetype index) const {
    qsizetype start = 0;
    for (qsizetype i = 0; i < index && i < m_tokens.size(); ++i)
        start += widthOf(m_tokens[i]);
    return start;
}

TokenEditor::Range TokenEditor::selectedRange() const {
    const qsizetype from = std::min(m_caret, m_anchor);
    return {from, std::max(m_caret, m_anchor) - from};
}

void TokenEditor::setCaret(qsizetype position, bool extend) {
    position = std::clamp<qsizetype>(position, 0, length());
    const QString all = text();
    if (position > 0 && position < all.size() && all[position].isLowSurrogate() &&
        all[position - 1].isHighSurrogate())
        --position;
    m_caret = position;
    if (!extend)
        m_anchor = position;
}

void TokenEditor::selectAll() {
    m_anchor = 0;
    m_caret = length();
}

void TokenEditor::moveLeft(bool extend) {
    if (!extend && hasSelection()) {
        setCaret(selectedRange().location);
        return;
    }
    const QString all = text();
    qsizetype to = m_caret - 1;
    if (to > 0 && all[to].isLowSurrogate() && all[to - 1].isHighSurrogate())
        --to;
    setCaret(to, extend);
}

void TokenEditor::moveRight(bool extend) {
    if (!extend && hasSelection()) {
        setCaret(selectedRange().end());
        return;
    }
    const QString all = text();
    qsizetype to = m_caret + 1;
    if (to < all.size() && all[to].isLowSurrogate() && all[to - 1].isHighSurrogate())
        ++to;
    setCaret(to, extend);
}

void TokenEditor::removeRange(qsizetype from, qsizetype to) {
    QList<Token> out;
    qsizetype start = 0;
    for (const Token& token : m_tokens) {
        const qsizetype width = widthOf(token);
        const qsizetype end = start + width;
        if (end <= from || start >= to) {
            out.append(token);
        } else if (!isCommitted(token)) {
            // Keep the parts of the text outside the removed range.
            const QString& t = std::get<QString>(token);
            out.append(t.left(std::max<qsizetype>(0, from - start)) +
                       t.mid(std::min(width, to - start)));
        }
        start = end;
    }
    m_tokens = std::move(out);
    normalize();
    m_caret = m_anchor = from;
}

void TokenEditor::deleteSelection() {
    if (hasSelection()) {
        const Range r = selectedRange();
        removeRange(r.location, r.end());
    }
}

void TokenEditor::insertText(const QString& typed) {
    deleteSelection();
    QString insert = typed;
    insert.remove(kTokenCharacter);
    if (insert.isEmpty())
        return;
    const qsizetype at = m_caret;
    // Into the text token that holds or touches the caret, else as a new one between tokens.
    qsizetype start = 0;
    qsizetype index = 0;
    for (; index < m_tokens.size(); ++index) {
        const qsizetype width = widthOf(m_tokens[index]);
        if (!isCommitted(m_tokens[index]) && at >= start && at <= start + width) {
            std::get<QString>(m_tokens[index]).insert(at - start, insert);
            break;
        }
        if (start + width > at) {
            m_tokens.insert(index, insert);
            break;
        }
        start += width;
    }
    if (index == m_tokens.size())
        m_tokens.append(insert);
    m_caret = m_anchor = at + insert.size();
}

void TokenEditor::deleteBackward() {
    if (hasSelection()) {
        deleteSelection();
        return;
    }
    if (m_caret == 0)
        return;
    const qsizetype end = m_caret;
    moveLeft(false);
    removeRange(m_caret, end);
}

void TokenEditor::deleteForward() {
    if (hasSelection()) {
        deleteSelection();
        return;
    }
    if (m_caret == length())
        return;
    const qsizetype start = m_caret;
    moveRight(false);
    removeRange(start, m_caret);
}

qsizetype TokenEditor::tokenIndex() const {
    qsizetype remaining = selectedRange().location;
    for (qsizetype i = 0; i < m_tokens.size(); ++i) {
        remaining -= widthOf(m_tokens[i]);
        if (remaining < 1)
            return i;
    }
    return m_tokens.size();
}

qsizetype TokenEditor::editedTextToken() const {
    qsizetype start = 0;
    for (qsizetype i = 0; i < m_tokens.size(); ++i) {
        const qsizetype width = widthOf(m_tokens[i]);
        if (!isCommitted(m_tokens[i]) && m_caret >= start && m_caret <= start + width)
            return i;
        start += width;
    }
    return -1;
}

qsizetype TokenEditor::committedTokenAt(qsizetype position) const {
    qsizetype start = 0;
    for (qsizetype i = 0; i < m_tokens.size(); ++i) {
        const qsizetype width = widthOf(m_tokens[i]);
        if (position >= start && position < start + width)
            return isCommitted(m_tokens[i]) ? i : -1;
        start += width;
    }
    return -1;
}

void TokenEditor::replaceToken(qsizetype index, const QList<Token>& with) {
    if (index < 0 || index >= m_tokens.size())
        return;
    const qsizetype start = tokenStart(index);
    // What follows the replacement keeps its length, merged with a text or not.
    const qsizetype after = length() - start - widthOf(m_tokens[index]);
    m_tokens.remove(index);
    for (qsizetype i = 0; i < with.size(); ++i)
        m_tokens.insert(index + i, with[i]);
    normalize();
    m_caret = m_anchor = length() - after;
}

QList<Token> TokenEditor::selectedTokens() const {
    const Range r = selectedRange();
    QList<Token> out;
    qsizetype start = 0;
    for (const Token& token : m_tokens) {
        const qsizetype width = widthOf(token);
        const qsizetype from = std::max(start, r.location);
        const qsizetype to = std::min(start + width, r.end());
        if (from < to)
            out.append(isCommitted(token)
                           ? token
                           : Token(std::get<QString>(token).mid(from - start, to - from)));
        start += width;
    }
    return out;
}

} // namespace velmora
