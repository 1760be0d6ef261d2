// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/TokenFieldLayout.h"

#include <algorithm>

namespace velmora {

TokenFieldLayout::TokenFieldLayout(const QList<Token>& tokens, const QFont& font)
    : m_metrics(font) {
    // A token's box is a little taller than the text line; the line leaves room for it.
    m_lineHeight = m_metrics.height() + 4;
    qreal x = 0;
    qsizetype start = 0;
    for (qsizetype i = 0; i < tokens.size(); ++i) {
        Piece piece;
        piece.tokenIndex = i;
        piece.start = start;
        piece.committed = isCommitted(tokens[i]);
        piece.text = displayString(tokens[i]);
        piece.x = x;
        if (piece.committed) {
            piece.width = 1;
            piece.advance =
                m_metrics.horizontalAdvance(piece.text) + 2 * (kTokenPadding + kTokenMargin);
        } else {
            piece.width = piece.text.size();
            piece.layout = std::make_shared<QTextLayout>(piece.text, font);
            piece.layout->beginLayout();
            QTextLine line = piece.layout->createLine();
            line.setLineWidth(1e7);
            piece.layout->endLayout();
            piece.advance = line.naturalTextWidth();
        }
        x += piece.advance;
        start += piece.width;
        m_pieces.push_back(std::move(piece));
    }
    m_width = x;
}

QRectF TokenFieldLayout::tokenBox(const Piece& piece) const {
    return QRectF(piece.x + kTokenMargin, 1, piece.advance - 2 * kTokenMargin, m_lineHeight - 2);
}

qreal TokenFieldLayout::xForPosition(qsizetype position) const {
    for (const Piece& piece : m_pieces) {
        if (position >= piece.start + piece.width)
            continue;
        if (piece.committed || position <= piece.start)
            return piece.x;
        return piece.x + piece.layout->lineAt(0).cursorToX(int(position - piece.start));
    }
    return m_width;
}

qsizetype TokenFieldLayout::positionForX(qreal x) const {
    for (const Piece& piece : m_pieces) {
        if (x >= piece.x + piece.advance)
            continue;
        if (piece.committed)
            return x < piece.x + piece.advance / 2 ? piece.start : piece.start + 1;
        return piece.start + std::max(0, piece.layout->lineAt(0).xToCursor(x - piece.x));
    }
    return m_pieces.empty() ? 0 : m_pieces.back().start + m_pieces.back().width;
}

qsizetype TokenFieldLayout::committedTokenAtX(qreal x) const {
    for (const Piece& piece : m_pieces) {
        if (piece.committed && tokenBox(piece).left() <= x && x < tokenBox(piece).right())
            return piece.tokenIndex;
    }
    return -1;
}

} // namespace velmora
