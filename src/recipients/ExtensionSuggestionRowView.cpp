// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#include "recipients/ExtensionSuggestionRowView.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>

namespace velmora {

QColor ExtensionSuggestionRowView::selectionColor(const QPalette& palette) {
    const QColor base = palette.color(QPalette::Base);
    const QColor highlight = palette.color(QPalette::Highlight);
    return QColor::fromRgbF(base.redF() * 0.7f + highlight.redF() * 0.3f,
                            base.greenF() * 0.7f + highlight.greenF() * 0.3f,
                            base.blueF() * 0.7f + highlight.blueF() * 0.3f);
}

QColor ExtensionSuggestionRowView::gridColor(const QPalette& palette) {
    QColor line = palette.color(QPalette::Text);
    line.setAlphaF(0.25f);
    return line;
}

void ExtensionSuggestionRowView::paint(QPainter* painter, const QStyleOptionViewItem& option) {
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    // The list never has the keyboard, so its selection takes the light tint of a list without
    // focus, taken afresh from the palette of the moment so a theme change shows at once.
    QStyleOptionViewItem row = option;
    const QColor selection = selectionColor(option.palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        row.palette.setColor(group, QPalette::Highlight, selection);
    style->drawPrimitive(QStyle::PE_PanelItemViewRow, &row, painter, widget);
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &row, painter, widget);
    // The column's solid vertical grid line, along its right edge.
    painter->save();
    painter->setPen(QPen(gridColor(option.palette), 1));
    painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    painter->restore();
}

} // namespace velmora
