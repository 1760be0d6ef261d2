// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPalette>
#include <QStyleOptionViewItem>

class QPainter;

namespace velmora {

// The background of one suggestion row: the style's own item panel, which shows the selection
// highlight in a light tint of the palette's highlight, and the column's vertical grid line.
class ExtensionSuggestionRowView {
public:
    ExtensionSuggestionRowView() = delete;

    // The selected row's background: the base colour with a third of the highlight in it, under
    // which the palette's text colour reads in light and dark themes alike.
    static QColor selectionColor(const QPalette& palette);
    // The grid line: the text colour at a quarter.
    static QColor gridColor(const QPalette& palette);

    static void paint(QPainter* painter, const QStyleOptionViewItem& option);
};

} // namespace velmora
