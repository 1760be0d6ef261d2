// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/Recipient.h"

#include <QFont>
#include <QFontMetricsF>
#include <QRectF>
#include <QTextLayout>

#include <memory>
#include <vector>

namespace velmora {

// Where the recipient field's characters lie on its one line, in unscrolled coordinates from the
// left edge: a committed token is a rounded box around its display string, a text token its
// glyphs. Both painting and mouse hit-testing read positions from here.
class TokenFieldLayout {
public:
    struct Piece {
        qsizetype tokenIndex = 0;
        qsizetype start = 0; // the piece's first character position in the field's text
        qsizetype width = 0; // characters: 1 for a token
        bool committed = false;
        QString text; // the display string, or the typed text
        qreal x = 0;  // left edge of the piece's advance
        qreal advance = 0;
        std::shared_ptr<QTextLayout> layout; // texts only: glyph positions
    };

    static constexpr qreal kTokenPadding = 6; // inside a token's box, left and right
    static constexpr qreal kTokenMargin = 2;  // outside it, between neighbouring tokens

    TokenFieldLayout(const QList<Token>& tokens, const QFont& font);

    const std::vector<Piece>& pieces() const { return m_pieces; }
    qreal width() const { return m_width; }
    qreal lineHeight() const { return m_lineHeight; }
    qreal ascent() const { return m_metrics.ascent(); }
    // The box of a committed token, from the top of the line.
    QRectF tokenBox(const Piece& piece) const;

    qreal xForPosition(qsizetype position) const;
    // The character boundary nearest to x.
    qsizetype positionForX(qreal x) const;
    // The committed token whose box holds x, or -1.
    qsizetype committedTokenAtX(qreal x) const;

private:
    QFontMetricsF m_metrics;
    std::vector<Piece> m_pieces;
    qreal m_width = 0;
    qreal m_lineHeight = 0;
};

} // namespace velmora
