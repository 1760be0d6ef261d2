// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include "recipients/TokenEditor.h"
#include "recipients/TokenFieldLayout.h"

#include <QPalette>
#include <QRect>

class QPainter;

namespace velmora {

// What the recipient field's paint routine needs to know besides the layout.
struct TokenFieldPaintState {
    QRect content;                // the line's area inside the field
    qreal scrollX = 0;            // how far the line is scrolled to the left
    TokenEditor::Range selection; // characters shown selected
    qsizetype caret = 0;
    bool showCaret = false; // focused, in the blink's visible phase, nothing selected
    QString placeholder;    // shown when there are no tokens
    QPalette palette;
};

// Paints the recipient field's line: committed tokens as rounded boxes with their display
// strings, typed text as it is, the selection and the caret. Only paints; decides nothing.
void paintTokenField(QPainter& painter, const TokenFieldLayout& layout,
                     const TokenFieldPaintState& state);

} // namespace velmora
