// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/Recipient.h"

#include <QList>
#include <QString>

namespace velmora {

// The editing state of the recipient field, without any painting: its tokens, the text they
// make, the caret and the selection. Every committed token is one character of the text (an
// object replacement character), a text token is its own characters, so positions are in UTF-16
// units of that text as the field counts them. Two text tokens are never neighbours and none is
// empty: a run of typed text between committed tokens is one text token.
class TokenEditor {
public:
    static constexpr QChar kTokenCharacter = QChar(0xFFFC);

    struct Range {
        qsizetype location = 0;
        qsizetype length = 0;
        qsizetype end() const { return location + length; }
        friend bool operator==(const Range&, const Range&) = default;
    };

    const QList<Token>& tokens() const { return m_tokens; }
    // Replaces every token (merging neighbouring texts, dropping empty texts and null records)
    // and puts the caret at the end.
    void setTokens(const QList<Token>& tokens);

    QString text() const;
    qsizetype length() const;
    // The characters a token takes: 1 for a committed one, its length for a text.
    static qsizetype widthOf(const Token& token);
    qsizetype tokenStart(qsizetype index) const;

    qsizetype caret() const { return m_caret; }
    qsizetype anchor() const { return m_anchor; }
    Range selectedRange() const;
    bool hasSelection() const { return m_caret != m_anchor; }
    // Moves the caret (keeping the anchor when extending); never between the halves of a
    // surrogate pair.
    void setCaret(qsizetype position, bool extend = false);
    void selectAll();
    void moveLeft(bool extend);
    void moveRight(bool extend);
    void moveToStart(bool extend) { setCaret(0, extend); }
    void moveToEnd(bool extend) { setCaret(length(), extend); }

    // Replaces the selection by text (object replacement characters are dropped: only tokens
    // make those). The caret ends after the text.
    void insertText(const QString& text);
    // Deletes the selection, else the character (or the whole token) before the caret.
    void deleteBackward();
    // Deletes the selection, else the character (or the whole token) after the caret.
    void deleteForward();
    void deleteSelection();

    // The index of the token under the caret: walking the tokens, the first one after which the
    // caret's remaining distance is below 1; the number of tokens when none is. So the caret
    // right after a committed token belongs to that token, not to the text that follows it.
    qsizetype tokenIndex() const;
    // The text token that holds or touches the caret, or -1: the token being edited.
    qsizetype editedTextToken() const;
    // The committed token drawn at the character position, or -1.
    qsizetype committedTokenAt(qsizetype position) const;
    // Puts tokens in place of the token at index; the caret ends after them.
    void replaceToken(qsizetype index, const QList<Token>& with);
    // The tokens the selection covers, texts cut to the selected part.
    QList<Token> selectedTokens() const;

private:
    void normalize();
    // Removes the characters [from, to); the caret ends at from.
    void removeRange(qsizetype from, qsizetype to);

    QList<Token> m_tokens;
    qsizetype m_caret = 0;
    qsizetype m_anchor = 0;
};

} // namespace velmora
