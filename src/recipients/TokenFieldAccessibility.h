// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/Recipient.h"

#include <QList>
#include <QString>

namespace velmora {

// The recipient field as a screen reader reads it: each committed token by its display string,
// typed text as it is, the pieces parted by ", ". Maps positions between the field's own text
// (one character per committed token, in UTF-16 units as the editor counts them) and this one.
class AccessibleTokenText {
public:
    explicit AccessibleTokenText(const QList<Token>& tokens);

    const QString& text() const { return m_text; }
    // Where the field's position lies in the text: the start of a token's display string
    // before it, its end after it.
    int offsetForPosition(qsizetype position) const;
    // The field's position nearest to offset: a token's start in the first half of its display
    // string, its end in the second; the next token's start inside a separator.
    qsizetype positionForOffset(int offset) const;

private:
    struct Piece {
        int offset = 0; // where its text starts
        int length = 0;
        qsizetype position = 0; // where its token starts in the field
        qsizetype width = 0;    // characters the token takes in the field
        bool committed = false;
    };
    QString m_text;
    QList<Piece> m_pieces;
    qsizetype m_length = 0; // of the field's own text
};

// Registers the accessibility interface of the recipient field with Qt: an editable text whose
// value and text interface are the AccessibleTokenText of its tokens. Once per process; later
// calls do nothing.
void installTokenFieldAccessibility();

} // namespace velmora
