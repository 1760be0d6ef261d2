// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/TokenFieldPainter.h"

#include <QPainter>
#include <QPainterPath>

namespace velmora {

namespace {

bool covers(const TokenEditor::Range& range, qsizetype position) {
    return position >= range.location && position < range.end();
}

void paintToken(QPainter& painter, const TokenFieldLayout& layout,
                const TokenFieldLayout::Piece& piece, bool selected, const QPalette& palette) {
    const QRectF box = layout.tokenBox(piece).adjusted(0.5, 0.5, -0.5, -0.5);
    const QColor highlight = palette.color(QPalette::Highlight);
    QColor fill = selected ? highlight : palette.color(QPalette::Base);
    QColor border = highlight;
    if (!selected) {
        // A light tint of the selection colour, so tokens read as one family with it.
        fill = QColor::fromRgbF(fill.redF() * 0.82 + highlight.redF() * 0.18,
                                fill.greenF() * 0.82 + highlight.greenF() * 0.18,
                                fill.blueF() * 0.82 + highlight.blueF() * 0.18);
        border.setAlphaF(0.45);
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(QPen(border, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(box, 4, 4);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const qreal textTop = (layout.lineHeight() - QFontMetricsF(painter.font()).height()) / 2;
    painter.drawText(
        QPointF(box.left() + TokenFieldLayout::kTokenPadding, textTop + layout.ascent()),
        piece.text);
}

void paintText(QPainter& painter, const TokenFieldLayout& layout,
               const TokenFieldLayout::Piece& piece, const TokenEditor::Range& selection,
               const QPalette& palette) {
    QList<QTextLayout::FormatRange> selected;
    const qsizetype from = std::max(selection.location, piece.start) - piece.start;
    const qsizetype to = std::min(selection.end(), piece.start + piece.width) - piece.start;
    if (from < to) {
        QTextLayout::FormatRange range;
        range.start = int(from);
        range.length = int(to - from);
        range.format.setBackground(palette.brush(QPalette::Highlight));
        range.format.setForeground(palette.brush(QPalette::HighlightedText));
        selected.append(range);
    }
    painter.setPen(palette.color(QPalette::Text));
    const qreal textTop = (layout.lineHeight() - piece.layout->lineAt(0).height()) / 2;
    piece.layout->draw(&painter, QPointF(piece.x, textTop), selected);
}

} // namespace

void paintTokenField(QPainter& painter, const TokenFieldLayout& layout,
                     const TokenFieldPaintState& state) {
    painter.save();
    painter.setClipRect(state.content);
    const qreal lineTop = state.content.top() + (state.content.height() - layout.lineHeight()) / 2;
    painter.translate(state.content.left() - state.scrollX, lineTop);

    if (layout.pieces().empty() && !state.placeholder.isEmpty()) {
        painter.setPen(state.palette.color(QPalette::PlaceholderText));
        const qreal textTop = (layout.lineHeight() - QFontMetricsF(painter.font()).height()) / 2;
        painter.drawText(QPointF(0, textTop + layout.ascent()), state.placeholder);
    }
    for (const TokenFieldLayout::Piece& piece : layout.pieces()) {
        if (piece.committed)
            paintToken(painter, layout, piece, covers(state.selection, piece.start), state.palette);
        else
            paintText(painter, layout, piece, state.selection, state.palette);
    }
    if (state.showCaret) {
        const qreal x = std::round(layout.xForPosition(state.caret));
        painter.fillRect(QRectF(x, 2, 1, layout.lineHeight() - 4),
                         state.palette.color(QPalette::Text));
    }
    painter.restore();
}

} // namespace velmora
